// The names of the MIDI controllers, as the instrument editor shows them.
#include <algorithm>
#include <cstdio>
#include <iterator>

#include "song/Instrument.h"

namespace vonta {
namespace {

constexpr int kNoController = 255;

struct NamedController {
    int number;
    const char* name;
};

constexpr NamedController kControllers[] = {
    {0, "BankSelMSB"},   {1, "Modulation"},   {2, "BreathCtrl"},   {4, "Foot Ctrl"},    {5, "Porta Time"},
    {6, "DataEntMSB"},   {7, "MainVolume"},   {8, "Balance"},      {10, "Pan"},         {11, "Expression"},
    {16, "Gen.Purp.1"},  {17, "Gen.Purp.2"},  {18, "Gen.Purp.3"},  {19, "Gen.Purp.4"},  {32, "BankSelLSB"},
    {33, "Modul. LSB"},  {34, "BrthCt LSB"},  {36, "FootCt LSB"},  {37, "Port.T LSB"},  {38, "DataEntLSB"},
    {39, "MainVolLSB"},  {40, "BalanceLSB"},  {42, "Pan LSB"},     {43, "Expr. LSB"},   {48, "Gen.P.1LSB"},
    {49, "Gen.P.2LSB"},  {50, "Gen.P.3LSB"},  {51, "Gen.P.4LSB"},  {64, "Sustain"},     {65, "Porta. Ped"},
    {66, "Sostenuto"},   {67, "Soft Pedal"},  {69, "Hold 2"},      {71, "HarmonicCo"},  {72, "Rel. Time"},
    {73, "AttackTime"},  {74, "Brightness"},  {80, "Gen.Purp.5"},  {81, "Gen.Purp.6"},  {82, "Gen.Purp.7"},
    {83, "Gen.Purp.8"},  {84, "PortaCtrl"},   {91, "Effect1Dep"},  {92, "Effect2Dep"},  {93, "Effect3Dep"},
    {94, "Effect4Dep"},  {95, "Phaser Dep"},  {96, "Data Incr"},   {97, "Data Decr"},   {98, "NRPN LSB"},
    {99, "NRPN MSB"},    {100, "RPN LSB"},    {101, "RPN MSB"},    {120, "AllSndOff"},  {121, "Reset Ctrl"},
    {122, "Local Ctrl"}, {123, "AllNoteOff"}, {124, "OmniModOff"}, {125, "OmniModOn"},  {126, "MonoModOn"},
    {127, "PolyModOn"},
};

// At most ten characters wide: from 100 on there is no room for the blank.
std::string ControllerName(int number) {
    const auto* named = std::ranges::find(kControllers, number, &NamedController::number);
    if (named != std::end(kControllers)) return named->name;
    return (number < 100 ? "Control " : "Control") + std::to_string(number);
}

}  // namespace

std::string ControllerText(int controller) {
    if (controller == kNoController) return "None";
    char number[16];
    std::snprintf(number, sizeof number, "%02X: ", static_cast<unsigned>(controller));
    return number + ControllerName(controller);
}

}  // namespace vonta
