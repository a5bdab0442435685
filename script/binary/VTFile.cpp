#include <algorithm>
#include <memory>
#include <string>

#include "formats/streams/FileStream.h"
#include "script/binary/VTStruct.h"
#include "script/binding/ScriptCall.h"

namespace vonta {
namespace {

constexpr const char* kNotOpened = "File(%s) can't be openned";
constexpr const char* kBadPosition = "Position parameter out of range";
constexpr const char* kBadSize = "Size parameter out of range";
constexpr const char* kBadType = "Datatype invalid";
constexpr const char* kWriteFailed = "Possible error writting string to file";
constexpr const char* kBadArray = "Array member type can't be created";

// What is written appears under its name when the file is closed.
class VTFile final : public ScriptObject {
public:
    explicit VTFile(std::unique_ptr<DiskStream> opened) : ScriptObject(VTFileClass()), stream(std::move(opened)) {}
    ~VTFile() override { Close(); }

    bool Close() {
        const auto closing = std::move(stream);
        return !closing || closing->Close();
    }

    std::unique_ptr<DiskStream> stream;              // null once closed
};

DiskStream* StreamOf(ScriptCall& call) { return call.Self<VTFile>().stream.get(); }

bool TruthOr(ScriptCall& call, int number, bool otherwise) { return call.Has(number) ? call.Truth(number) : otherwise; }

int Construct(ScriptCall& call) {
    const std::string mode = std::string(TruthOr(call, 1, true) ? "r" : "w") + (TruthOr(call, 2, true) ? "b" : "t");
    auto stream = std::make_unique<DiskStream>();
    call.Vm().NoteMemory(sizeof *stream);
    // What is garbage by now may hold files open.
    const auto open = [&] { return stream->Open(call.Text(0), mode.c_str()); };
    if (!open()) {
        call.Vm().Collect();
        if (!open()) return TruthOr(call, 3, true) ? call.Warn(kNotOpened, call.Text(0)) : 0;
    }
    return call.GiveObject(MakeObject<VTFile>(std::move(stream)));
}

int IsOpenned(ScriptCall& call) { return call.GiveTruth(StreamOf(call)); }

int Close(ScriptCall& call) { return call.Self<VTFile>().Close() ? 0 : call.Warn(kWriteFailed); }

int GetSize(ScriptCall& call) {
    return StreamOf(call) ? call.GiveNumber(static_cast<double>(StreamOf(call)->Size())) : 0;
}

int GetPosition(ScriptCall& call) {
    return StreamOf(call) ? call.GiveNumber(static_cast<double>(StreamOf(call)->Tell())) : 0;
}

int SetPosition(ScriptCall& call) {
    DiskStream* const stream = StreamOf(call);
    if (!stream) return 0;
    const double position = call.Number(0);
    if (!(position >= 1 && position < static_cast<double>(stream->Size()) + 1)) return call.Warn(kBadPosition);
    stream->Seek(static_cast<std::int64_t>(position), kFromStart);
    return 0;
}

// One value as a file holds it; false if there are none of its type. A text takes no more memory than the file has
// bytes left, and is cut at its first zero.
bool ReadValue(Reader& in, const VTStructDef::Member& member, VTStruct::Value& value) {
    if (member.type == VT_STRING) {
        const double bytes = std::min(member.length, static_cast<double>(in.Remaining()));
        value.text = in.FixedText(static_cast<std::size_t>(std::max(bytes, 0.0)));
    } else if (member.type == VT_STRINGSZ) {
        value.text = in.Text();
    } else if (IsNumber(member.type)) {
        in.Bytes({value.bytes.data(), static_cast<std::size_t>(kDataTypes[member.type].size)});
    } else {
        return false;
    }
    value.filled = true;
    return true;
}

int Read(ScriptCall& call) {
    DiskStream* const stream = StreamOf(call);
    if (!stream) return 0;
    VTStructDef::Member member;
    member.type = call.Integer(0);
    if (member.type == VT_STRING) {
        member.length = call.Vm().CheckNumber(call.Index(1));
        if (!(member.length >= 0)) return call.Warn(kBadSize);
    }
    Reader in(*stream);
    VTStruct::Value value;
    if (!ReadValue(in, member, value)) return call.Warn(kBadType);
    call.Vm().NoteMemory(value.text.size());
    if (!IsNumber(member.type)) return call.GiveText(value.text);
    return call.GiveNumber(ReadNumber(member.type, value.bytes.data()));
}

int ReadStruct(ScriptCall& call) {
    DiskStream* const stream = StreamOf(call);
    if (!stream) return 0;
    Reader in(*stream);
    auto result = MakeObject<VTStruct>(ScriptRef<VTStructDef>::Share(&call.As<VTStructDef>(0)));
    std::size_t number = 0;
    for (const VTStructDef::Member& member : result->definition->members) {
        VTStruct::Value& value = result->values[number++];
        if (member.type == VT_ARRAY) {
            value.array = VTArray::Make(member.subtype, member.length, &call.Vm());
            if (!value.array) call.Vm().RaiseError("%s", kBadArray);
            value.filled = true;
            in.Bytes(value.array->Bytes());
        } else if (!ReadValue(in, member, value)) {
            call.Warn(kUnknownMember);
        }
        call.Vm().NoteMemory(sizeof value + value.text.size());
    }
    return call.GiveObject(std::move(result));
}

int ReadArray(ScriptCall& call) {
    DiskStream* const stream = StreamOf(call);
    if (!stream) return 0;
    VTArray& array = call.As<VTArray>(0);
    const std::size_t left = static_cast<std::size_t>(stream->Remaining());
    stream->Read(array.Bytes().data(), 1, std::min(left, array.Bytes().size()));
    if (TruthOr(call, 1, false)) ConvertEndian(call, array);
    return 0;
}

int PrintTexts(ScriptCall& call) {
    DiskStream* const stream = StreamOf(call);
    for (int i = 0; stream && i < call.Count(); ++i) {
        const std::string_view text = call.Vm().CheckText(call.Index(i));
        if (!text.empty() && stream->Write(text.data(), 1, text.size()) != text.size()) call.Warn(kWriteFailed);
    }
    return 0;
}

constexpr const char* kExample = R"(notes = VTFile("notes.txt", false, false)
notes:Print("tempo ", 6, "\n")
notes:Close()
notes = VTFile("notes.txt")
vtDebug:ODS(notes:Read(VT_STRING, notes:GetSize()))
notes:Close()
)";

}  // namespace

const ScriptClass& VTFileClass() {
    static const ScriptClass scriptClass(
        "VTFile",
        {"A file that is read, or written. What is written appears under its name when the file is closed, in the "
         "place of what was there. All methods do nothing on a closed file.",
         kExample},
        {"VTFile",
         {Text("name"), Optional(Truth("read")), Optional(Truth("binary")), Optional(Truth("warn"))},
         "VTFile, or nothing if it cannot be opened",
         "Opens the file for reading, or with `read` false for writing; `warn` false leaves out the warning.",
         Construct,
         {kNotOpened}},
        {
            {"IsOpenned", {}, "boolean", "False once it has been closed.", IsOpenned},
            {"Close", {}, nullptr, "Closes it.", Close, {kWriteFailed}},
            {"GetSize", {}, "number", "Its bytes.", GetSize},
            {"GetPosition", {}, "number", "The byte that comes next, from 0.", GetPosition},
            {"SetPosition", {Number("position")}, nullptr, "Goes there, from 1 to the file's size.", SetPosition,
             {kBadPosition}},
            {"Read", {Number("type"), Any("length", "number, for VT_STRING")}, "number or string",
             "The next value. A text ends at its first zero byte; behind the file's end there are zeroes.", Read,
             {kBadSize, kBadType}},
            {"ReadStruct", {Object("definition", "VTStructDef")}, "VTStruct",
             "The next record. An array that cannot be made is an error that ends the running function.", ReadStruct,
             {kUnknownMember, kBadArray}},
            {"ReadArray", {Object("array", "VTArray"), Optional(Truth("convert"))}, nullptr,
             "Fills the array from the file; with `convert` its ConvertEndian follows.", ReadArray},
            {"Print", {Rest("texts", "strings, any number of them")}, nullptr,
             "Writes the texts, with all their bytes.", PrintTexts,
             {kWriteFailed}},
        });
    return scriptClass;
}

}  // namespace vonta
