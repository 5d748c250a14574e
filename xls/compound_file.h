// A compound file (structured storage, version 3 with 512-byte sectors): named storages and
// streams in one file, as binary workbooks use it. Streams are read and written whole.
//
// Paths name entries with '\' between the parts; a path that starts with '\' is taken from the
// root, any other from the current storage. Names are UTF-16 on disk (at most 31 code units).
// Every change is written to the file at once, replacing it atomically.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "order_data/visibility.h"
#include "platform/file_system.h"

namespace xls {

class ORDERVIEW_API CompoundFile {
public:
    enum class Mode { ReadOnly, ReadWrite };
    // Results of MakeFile and MakeDirectory.
    // (Enumerators, not static members: a DLL exports no storage for them.)
    enum : int {
        kOk = 1,
        kBadPath = -1,      // empty or unusable path (a part is a stream, ...)
        kNameTooLong = -5,  // a name of 32 code units or more
        kNameExists = -6,   // the parent already holds an entry of that name
    };

    struct EntryInfo {
        std::wstring path;  // from the root, '\' between the parts
        bool storage = false;
        std::uint64_t size = 0;
    };

    CompoundFile();
    ~CompoundFile();
    CompoundFile(const CompoundFile&) = delete;
    CompoundFile& operator=(const CompoundFile&) = delete;

    // A new file holding only the root storage "Root Entry" (an existing file is replaced).
    // Narrow paths are in the local code page; wide paths open as they are.
    bool Create(const orderview::FilePath& path);
    bool Create(const std::string& path) { return Create(orderview::FilePath(path)); }
    bool Create(const std::wstring& path) { return Create(orderview::FilePath(path)); }
    // A new file holding the root storage and one stream of it named `stream` with `data`,
    // written in one replacement (an empty `stream` makes only the root).
    bool Create(const orderview::FilePath& path, const std::wstring& stream, std::vector<std::uint8_t>&& data);
    // Makes a stream's bytes, handing them to `put` in pieces; false when `put` fails.
    using StreamWriter = std::function<bool(const std::function<bool(const void*, std::size_t)>& put)>;
    // Writes a new file at `path` holding the root storage and one stream `stream` of `size`
    // bytes that `write` makes as the file is written, so that the stream is never held whole
    // in memory. False, with any file at `path` left as it was, when anything fails (also when
    // `write` makes another number of bytes).
    static bool WriteSingleStream(const orderview::FilePath& path, const std::wstring& stream, std::uint64_t size,
                                  const StreamWriter& write);
    // The same file made in memory: `image` is replaced only when everything succeeded.
    static bool SingleStreamImage(const std::wstring& stream, std::uint64_t size, const StreamWriter& write,
                                  std::vector<std::uint8_t>& image);
    // Opens an existing file; false when it is no compound file or is damaged.
    bool Open(const orderview::FilePath& path, Mode mode = Mode::ReadOnly);
    bool Open(const std::string& path, Mode mode = Mode::ReadOnly) { return Open(orderview::FilePath(path), mode); }
    bool Open(const std::wstring& path, Mode mode = Mode::ReadOnly) { return Open(orderview::FilePath(path), mode); }
    // Opens an image held in memory, read-only (the bytes are copied).
    bool OpenMemory(const void* data, std::size_t size);
    // Opens an image held in memory, read-only and in place: the bytes are not copied, and must
    // stay as they are while the file is open.
    bool OpenView(const void* data, std::size_t size);
    void Close();
    bool IsOpen() const;

    int MakeFile(const std::wstring& path);
    int MakeDirectory(const std::wstring& path);
    // The current storage for relative paths, and a stack to save it on.
    bool ChangeDirectory(const std::wstring& path);
    void PushDirectory();
    bool PopDirectory();

    bool StreamSize(const std::wstring& path, std::uint64_t& size) const;
    // The whole stream; false when it is missing or its data is damaged.
    bool ReadStream(const std::wstring& path, std::vector<std::uint8_t>& data) const;
    // The whole stream without a copy where its bytes lie in order in the file: `data` and `size`
    // then point into the file image, valid while this object stays open and unchanged.
    // Otherwise the stream is read into `copy` and they point there.
    bool ViewStream(const std::wstring& path, const std::uint8_t*& data, std::size_t& size,
                    std::vector<std::uint8_t>& copy) const;
    // Replaces the whole content of an existing stream.
    bool WriteStream(const std::wstring& path, const void* data, std::size_t size);
    bool WriteStream(const std::wstring& path, std::vector<std::uint8_t>&& data);
    // The name of the root's stream that equals `name` without regard to letter case.
    bool FindStreamNoCase(const std::wstring& name, std::wstring& actual) const;
    // Every storage and stream below the root, depth first in directory order.
    std::vector<EntryInfo> List() const;

private:
    int MakeEntry(const std::wstring& path, bool stream);
    bool Adopt(std::vector<std::uint8_t>&& image, const orderview::FilePath& path, Mode mode);
    bool LoadAllStreams();
    bool Flush();

    struct State;
    std::unique_ptr<State> state_;
};

}  // namespace xls
