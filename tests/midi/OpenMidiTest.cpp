#include "midi/OpenMidi.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <new>

#include "tests/support/LogCapture.h"
#include "tests/support/ScriptedMidi.h"

namespace {
thread_local bool g_outOfMemory = false;
}

// The one that devices are made with.
void* operator new(std::size_t size, const std::nothrow_t&) noexcept { return g_outOfMemory ? nullptr : ::operator new(size); }

namespace vonta {
namespace {

struct Tables {
    std::array<std::unique_ptr<DrvMIDIOUT>, 4> outputs;
    std::array<std::unique_ptr<DrvMIDIIN>, 4> inputs;
};

std::shared_ptr<test::ScriptedMidi> TwoOfEach() {
    auto midi = std::make_shared<test::ScriptedMidi>();
    midi->outputs.push_back({.name = "Synth"});
    midi->outputs.push_back({.name = "Broken", .opens = false});
    midi->inputs.push_back({.name = "Broken", .opens = false});
    midi->inputs.push_back({.name = "Keys"});
    return midi;
}

TEST(OpenMidi, OpensAllAndTellsOfEach) {
    const auto midi = TwoOfEach();
    Tables tables;
    const LogCapture log;
    OpenMidi(midi, tables.outputs, tables.inputs);
    EXPECT_EQ(log.Text(),
              "\t\t- MIDIOut started (0): Synth\n"
              "* ERROR: no se pudo inicializar DrvMIDIOUT (1)\n"
              "* ERROR: Starting MIDIOut (1)\n"
              "\t- Starting MIDI IN\n"
              "\t\t- Trying to init MIDI In device: 0\n"
              "*ERROR: can't init MIDI In device: 0\n"
              "* ERROR: Starting MIDI In (0)\n"
              "\t\t- Trying to init MIDI In device: 1\n"
              "\t\t\t- MIDI In Procedure Opened.\n"
              "\t\t- MIDI In device (1) initialized\n"
              "\t\t- MIDIIn started(1): Keys\n");
    ASSERT_TRUE(tables.outputs[1]);                      // kept, to take what is sent to it
    EXPECT_EQ(tables.outputs[1]->GetName(), "");
    ASSERT_TRUE(tables.inputs[0]);
    EXPECT_EQ(tables.inputs[1]->GetName(), "Keys");
    EXPECT_FALSE(tables.outputs[2]);
}

TEST(OpenMidi, WithoutMemoryEntriesStayEmpty) {
    const auto midi = TwoOfEach();
    Tables tables;
    const LogCapture log;
    g_outOfMemory = true;
    OpenMidi(midi, tables.outputs, tables.inputs);
    g_outOfMemory = false;
    EXPECT_EQ(log.Text(),
              "* ERROR: creating object MIDIOut (0)\n* ERROR: creating object MIDIOut (1)\n\t- Starting MIDI IN\n"
              "* ERROR: creating object MIDI In (0)\n* ERROR: creating object MIDI In (1)\n");
    EXPECT_FALSE(tables.outputs[0]);
    EXPECT_FALSE(tables.inputs[1]);
}

TEST(OpenMidi, DevicesBeyondTheTablesAreLeftOut) {
    auto midi = std::make_shared<test::ScriptedMidi>();
    for (int i = 0; i < 6; ++i) {
        midi->outputs.push_back({.name = "Synth"});
        midi->inputs.push_back({.name = "Keys"});
    }
    Tables tables;
    OpenMidi(midi, tables.outputs, tables.inputs);
    EXPECT_TRUE(midi->outputs[3].open);
    EXPECT_FALSE(midi->outputs[4].open);
    EXPECT_EQ(midi->inputs[4].listener, nullptr);
}

TEST(OpenMidi, TheServiceLivesAsLongAsItsDevices) {
    Tables tables;
    std::weak_ptr<test::ScriptedMidi> service;
    {
        const auto midi = TwoOfEach();
        service = midi;
        OpenMidi(midi, tables.outputs, tables.inputs);
    }
    EXPECT_FALSE(service.expired());
    tables = {};
    EXPECT_TRUE(service.expired());
}

}  // namespace
}  // namespace vonta
