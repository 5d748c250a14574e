#include "xls/compound_file.h"

#include <algorithm>

#include "platform/file_system.h"
#include "xls/detail/cfb_reader.h"
#include "xls/detail/cfb_writer.h"
#include "xls/utf16.h"

namespace xls {

using cfb::Entry;

struct CompoundFile::State {
    orderview::FilePath path;
    Mode mode = Mode::ReadOnly;
    std::vector<std::uint8_t> image;  // the file as read (empty for a view); dropped once the streams are in memory
    cfb::Reader reader;
    std::vector<Entry> entries;
    bool inMemory = false;  // every stream's data is held in its entry
    std::uint32_t current = 0;
    std::vector<std::uint32_t> saved;
};

namespace {

std::vector<std::u16string> SplitPath(const std::u16string& path, bool& fromRoot)
{
    fromRoot = !path.empty() && path[0] == u'\\';
    std::vector<std::u16string> parts;
    std::u16string part;
    for (std::size_t i = fromRoot ? 1 : 0; i < path.size(); ++i) {
        if (path[i] == u'\\') {
            parts.push_back(part);
            part.clear();
        } else {
            part += path[i];
        }
    }
    parts.push_back(part);
    return parts;
}

}  // namespace

CompoundFile::CompoundFile() = default;
CompoundFile::~CompoundFile() = default;

bool CompoundFile::IsOpen() const { return state_ != nullptr; }

void CompoundFile::Close() { state_.reset(); }

namespace {

// Writes the image of the entries in place of the file at `path`, in one replacement.
bool WriteEntries(const orderview::FilePath& path, const std::vector<Entry>& entries)
{
    // Written in pieces: the large streams go to the file from where they are held.
    orderview::ReplacingFile file(path);
    return cfb::WriteImage(entries, [&file](const void* data, std::size_t size) { return file.Write(data, size); }) &&
           file.Commit();
}

}  // namespace

bool CompoundFile::Create(const orderview::FilePath& path)
{
    std::vector<std::uint8_t> none;
    return Create(path, std::wstring(), std::move(none));
}

namespace {

// The entries of a file holding the root and, unless `stream` is empty, one stream of it; false
// for a name a compound file cannot hold.
bool SingleStreamEntries(const std::wstring& stream, std::vector<Entry>& entries)
{
    const std::u16string name = ToUtf16(stream);
    if (name.size() > cfb::kMaxNameUnits || name.find(u'\\') != std::u16string::npos) return false;
    entries.resize(1);
    entries[0].name = u"Root Entry";
    entries[0].type = cfb::kRoot;
    if (!name.empty()) {
        Entry entry;
        entry.name = name;
        entry.type = cfb::kStream;
        entry.parent = 0;
        entries[0].children.push_back(1);
        entries.push_back(std::move(entry));
    }
    return true;
}

// The entries of a file holding one stream of `size` bytes made by `write`; false when the
// name or the size cannot be stored.
bool ProducedStreamEntries(const std::wstring& stream, std::uint64_t size, const CompoundFile::StreamWriter& write,
                           std::vector<Entry>& entries)
{
    if (stream.empty() || size > 0xFFFFFFFFu || !SingleStreamEntries(stream, entries)) return false;
    entries[1].size = size;
    entries[1].produce = write;
    return true;
}

}  // namespace

bool CompoundFile::Create(const orderview::FilePath& path, const std::wstring& stream, std::vector<std::uint8_t>&& data)
{
    Close();
    auto state = std::make_unique<State>();
    if (data.size() > 0xFFFFFFFFu || !SingleStreamEntries(stream, state->entries)) return false;
    state->path = path;
    state->mode = Mode::ReadWrite;
    if (state->entries.size() > 1) {
        state->entries[1].size = data.size();
        state->entries[1].data = std::move(data);
    }
    state->inMemory = true;
    if (!WriteEntries(path, state->entries)) return false;
    state_ = std::move(state);
    return true;
}

bool CompoundFile::WriteSingleStream(const orderview::FilePath& path, const std::wstring& stream, std::uint64_t size,
                                     const StreamWriter& write)
{
    std::vector<Entry> entries;
    return ProducedStreamEntries(stream, size, write, entries) && WriteEntries(path, entries);
}

bool CompoundFile::SingleStreamImage(const std::wstring& stream, std::uint64_t size, const StreamWriter& write,
                                     std::vector<std::uint8_t>& image)
{
    std::vector<Entry> entries;
    return ProducedStreamEntries(stream, size, write, entries) && cfb::WriteImage(entries, image);
}

bool CompoundFile::Open(const orderview::FilePath& path, Mode mode)
{
    Close();
    std::vector<std::uint8_t> image;
    return orderview::ReadWholeFile(path, image) && Adopt(std::move(image), path, mode);
}

bool CompoundFile::Adopt(std::vector<std::uint8_t>&& image, const orderview::FilePath& path, Mode mode)
{
    auto state = std::make_unique<State>();
    state->image = std::move(image);
    if (!state->reader.Parse(state->image.data(), state->image.size())) return false;
    state->entries = state->reader.entries();
    state->path = path;
    state->mode = mode;
    state_ = std::move(state);
    return true;
}

bool CompoundFile::OpenView(const void* data, std::size_t size)
{
    Close();
    auto state = std::make_unique<State>();
    if (!state->reader.Parse(static_cast<const std::uint8_t*>(data), size)) return false;
    state->entries = state->reader.entries();
    state_ = std::move(state);
    return true;
}

bool CompoundFile::OpenMemory(const void* data, std::size_t size)
{
    Close();
    const auto* bytes = static_cast<const std::uint8_t*>(data);
    return Adopt(std::vector<std::uint8_t>(bytes, bytes + size), orderview::FilePath(), Mode::ReadOnly);
}

// The child of `node` named `name` (exact code units), or -1.
static int Child(const std::vector<Entry>& entries, std::uint32_t node, const std::u16string& name)
{
    for (std::uint32_t c : entries[node].children)
        if (entries[c].name == name) return static_cast<int>(c);
    return -1;
}

// Walks a path to an entry; -1 when a part is missing or is not a storage. "\" alone is the root.
static int Find(const std::vector<Entry>& entries, std::uint32_t current, const std::u16string& path)
{
    bool fromRoot = false;
    const std::vector<std::u16string> parts = SplitPath(path, fromRoot);
    if (parts.size() == 1 && parts[0].empty()) return fromRoot ? 0 : -1;
    std::uint32_t node = fromRoot ? 0 : current;
    for (const auto& part : parts) {
        if (part.empty() || (entries[node].type != cfb::kStorage && entries[node].type != cfb::kRoot)) return -1;
        const int child = Child(entries, node, part);
        if (child < 0) return -1;
        node = static_cast<std::uint32_t>(child);
    }
    return static_cast<int>(node);
}

int CompoundFile::MakeFile(const std::wstring& path) { return MakeEntry(path, true); }
int CompoundFile::MakeDirectory(const std::wstring& path) { return MakeEntry(path, false); }

int CompoundFile::MakeEntry(const std::wstring& widePath, bool stream)
{
    if (!state_ || state_->mode != Mode::ReadWrite) return kBadPath;
    bool fromRoot = false;
    const std::vector<std::u16string> parts = SplitPath(ToUtf16(widePath), fromRoot);
    // Check every part before anything changes, so a refused path leaves the file as it was.
    for (const auto& part : parts) {
        if (part.empty()) return kBadPath;
        if (part.size() > cfb::kMaxNameUnits) return kNameTooLong;
    }
    std::vector<Entry>& entries = state_->entries;
    std::uint32_t node = fromRoot ? 0 : state_->current;
    std::size_t i = 0;
    for (; i + 1 < parts.size(); ++i) {
        const int child = Child(entries, node, parts[i]);
        if (child < 0) break;
        if (entries[static_cast<std::size_t>(child)].type != cfb::kStorage) return kBadPath;
        node = static_cast<std::uint32_t>(child);
    }
    if (i + 1 == parts.size() && Child(entries, node, parts[i]) >= 0) return kNameExists;
    if (!LoadAllStreams()) return kBadPath;
    for (; i < parts.size(); ++i) {
        Entry entry;
        entry.name = parts[i];
        entry.type = (i + 1 == parts.size() && stream) ? cfb::kStream : cfb::kStorage;
        entry.parent = static_cast<int>(node);
        const auto index = static_cast<std::uint32_t>(entries.size());
        entries.push_back(std::move(entry));
        auto& children = entries[node].children;
        const auto at = std::lower_bound(children.begin(), children.end(), parts[i],
                                         [&](std::uint32_t c, const std::u16string& name) {
                                             return cfb::DirectoryLess(entries[c].name, name);
                                         });
        children.insert(at, index);
        node = index;
    }
    return Flush() ? kOk : kBadPath;
}

bool CompoundFile::LoadAllStreams()
{
    if (state_->inMemory) return true;
    std::vector<Entry>& entries = state_->entries;
    for (std::uint32_t i = 0; i < entries.size(); ++i)
        if (entries[i].type == cfb::kStream && !state_->reader.ReadStream(i, entries[i].data)) return false;
    state_->inMemory = true;
    state_->image.clear();
    state_->image.shrink_to_fit();
    return true;
}

bool CompoundFile::Flush() { return WriteEntries(state_->path, state_->entries); }

bool CompoundFile::ChangeDirectory(const std::wstring& path)
{
    if (!state_) return false;
    const int node = Find(state_->entries, state_->current, ToUtf16(path));
    if (node < 0 || state_->entries[static_cast<std::size_t>(node)].type == cfb::kStream) return false;
    state_->current = static_cast<std::uint32_t>(node);
    return true;
}

void CompoundFile::PushDirectory()
{
    if (state_) state_->saved.push_back(state_->current);
}

bool CompoundFile::PopDirectory()
{
    if (!state_ || state_->saved.empty()) return false;
    state_->current = state_->saved.back();
    state_->saved.pop_back();
    return true;
}

bool CompoundFile::StreamSize(const std::wstring& path, std::uint64_t& size) const
{
    if (!state_) return false;
    const int node = Find(state_->entries, state_->current, ToUtf16(path));
    if (node < 0 || state_->entries[static_cast<std::size_t>(node)].type != cfb::kStream) return false;
    const Entry& entry = state_->entries[static_cast<std::size_t>(node)];
    size = state_->inMemory ? entry.data.size() : entry.size;
    return true;
}

bool CompoundFile::ReadStream(const std::wstring& path, std::vector<std::uint8_t>& data) const
{
    if (!state_) return false;
    const int node = Find(state_->entries, state_->current, ToUtf16(path));
    if (node < 0 || state_->entries[static_cast<std::size_t>(node)].type != cfb::kStream) return false;
    if (state_->inMemory) {
        data = state_->entries[static_cast<std::size_t>(node)].data;
        return true;
    }
    return state_->reader.ReadStream(static_cast<std::uint32_t>(node), data);
}

bool CompoundFile::ViewStream(const std::wstring& path, const std::uint8_t*& data, std::size_t& size,
                              std::vector<std::uint8_t>& copy) const
{
    if (!state_) return false;
    const int node = Find(state_->entries, state_->current, ToUtf16(path));
    if (node < 0 || state_->entries[static_cast<std::size_t>(node)].type != cfb::kStream) return false;
    const auto index = static_cast<std::uint32_t>(node);
    if (state_->inMemory) {
        data = state_->entries[index].data.data();
        size = state_->entries[index].data.size();
        return true;
    }
    if (state_->reader.StreamInPlace(index, data, size)) return true;
    if (!state_->reader.ReadStream(index, copy)) return false;
    data = copy.data();
    size = copy.size();
    return true;
}

bool CompoundFile::WriteStream(const std::wstring& path, const void* data, std::size_t size)
{
    const auto* bytes = static_cast<const std::uint8_t*>(data);
    return WriteStream(path, std::vector<std::uint8_t>(bytes, bytes + size));
}

bool CompoundFile::WriteStream(const std::wstring& path, std::vector<std::uint8_t>&& data)
{
    if (!state_ || state_->mode != Mode::ReadWrite || data.size() > 0xFFFFFFFFu) return false;
    const int node = Find(state_->entries, state_->current, ToUtf16(path));
    if (node < 0 || state_->entries[static_cast<std::size_t>(node)].type != cfb::kStream || !LoadAllStreams())
        return false;
    state_->entries[static_cast<std::size_t>(node)].data = std::move(data);
    return Flush();
}

bool CompoundFile::FindStreamNoCase(const std::wstring& name, std::wstring& actual) const
{
    if (!state_) return false;
    const std::u16string wanted = ToUtf16(name);
    for (std::uint32_t c : state_->entries[0].children) {
        const Entry& entry = state_->entries[c];
        if (entry.type == cfb::kStream && EqualIgnoringAsciiCase(entry.name, wanted)) {
            actual = FromUtf16(entry.name);
            return true;
        }
    }
    return false;
}

std::vector<CompoundFile::EntryInfo> CompoundFile::List() const
{
    std::vector<EntryInfo> out;
    if (!state_) return out;
    const std::vector<Entry>& entries = state_->entries;
    // Depth first without recursion: (entry, path of its parent).
    std::vector<std::pair<std::uint32_t, std::u16string>> stack;
    for (auto it = entries[0].children.rbegin(); it != entries[0].children.rend(); ++it) stack.emplace_back(*it, u"");
    while (!stack.empty()) {
        const auto [index, parent] = stack.back();
        stack.pop_back();
        const Entry& entry = entries[index];
        const std::u16string path = parent + u"\\" + entry.name;
        EntryInfo info;
        info.path = FromUtf16(path);
        info.storage = entry.type == cfb::kStorage;
        info.size = state_->inMemory ? entry.data.size() : entry.size;
        out.push_back(info);
        for (auto it = entry.children.rbegin(); it != entry.children.rend(); ++it) stack.emplace_back(*it, path);
    }
    return out;
}

}  // namespace xls
