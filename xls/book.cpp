#include "xls/book.h"

#include <algorithm>
#include <cstdint>
#include <cstring>

#include "xls/detail/cell_table_writer.h"
#include "xls/compound_file.h"
#include "xls/detail/grid_sink.h"
#include "xls/detail/stream_window.h"
#include "xls/utf16.h"

namespace xls {

namespace {

std::u16string FromNarrow(const char* name)
{
    std::u16string out;
    for (const char* p = name; p && *p; ++p) out += static_cast<char16_t>(static_cast<unsigned char>(*p));
    return out;
}

std::u16string FromWide(const wchar_t* name) { return name ? ToUtf16(name) : std::u16string(); }

std::string ToAnsi(const std::u16string& name)
{
    std::string out;
    for (char16_t c : name) out += c < 0x100 ? static_cast<char>(c) : '?';
    return out;
}

// Names spreadsheet programs accept: 1 to 31 characters, none of : \ / ? * [ ].
bool ValidName(const std::u16string& name)
{
    if (name.empty() || name.size() > 31) return false;
    for (char16_t c : name)
        if (c == u':' || c == u'\\' || c == u'/' || c == u'?' || c == u'*' || c == u'[' || c == u']') return false;
    return true;
}

}  // namespace

Book::Book() { workbook_.boundSheets.clear(); }

Book::Book(const char* filename) : Book() { Load(filename); }

Book::~Book() = default;

void Book::New(int sheets)
{
    missingStrings_ = 0;
    workbook_.Reset();
    workbook_.boundSheets.clear();
    sheets_.clear();
    for (int i = 0; i < std::max(sheets, 1); ++i) AddWorksheet();
}

bool Book::Load(const wchar_t* filename) { return filename && LoadFile(orderview::FilePath(filename)); }

bool Book::LoadContainer(const CompoundFile& container, const orderview::MappedFile* mapped,
                         const orderview::FilePath* path)
{
    // The stream is "Workbook" in any letter case; some writers use the older name "Book".
    std::wstring name;
    if (!container.FindStreamNoCase(L"Workbook", name) && !container.FindStreamNoCase(L"Book", name)) return false;
    const std::uint8_t* stream = nullptr;
    std::size_t size = 0;
    std::vector<std::uint8_t> copy;
    if (!container.ViewStream(L"\\" + name, stream, size, copy)) return false;
    if (mapped && path && copy.empty()) {
        // The stream lies in order in the mapped file: it is read from the file in parts, which
        // costs less than the first touch of each of its mapped pages.
        const auto first = reinterpret_cast<std::uintptr_t>(mapped->Data());
        const auto at = reinterpret_cast<std::uintptr_t>(stream);
        if (at >= first && at - first <= mapped->Size() && size <= mapped->Size() - (at - first)) {
            orderview::FileReader file(*path);
            if (file.IsOpen()) {
                StreamWindow window(file, at - first, size);
                return LoadStream(window);
            }
        }
    }
    StreamWindow window(stream, size);
    return LoadStream(window);
}

bool Book::Load(const char* filename) { return filename && LoadFile(orderview::FilePath(filename)); }

bool Book::LoadFile(const orderview::FilePath& path)
{
    // The container is parsed where the file is mapped (its pages mapped as they are read); a
    // file that cannot be mapped is read whole.
    const orderview::MappedFile mapped(path, false);
    CompoundFile container;
    if (!(mapped.IsOpen() ? container.OpenView(mapped.Data(), mapped.Size()) && LoadContainer(container, &mapped, &path)
                          : container.Open(path) && LoadContainer(container)))
        return false;
    path_ = path;
    return true;
}

bool Book::LoadFromMemory(const void* data, std::size_t size)
{
    CompoundFile container;
    if (!container.OpenView(data, size) || !LoadContainer(container)) return false;
    path_ = orderview::FilePath();
    return true;
}

bool Book::LoadStream(StreamWindow& stream)
{
    // The globals are held whole, through the CONTINUE parts of their EOF and the header after.
    for (std::size_t at = 0;;) {
        if (!stream.Hold(at, 4)) return false;  // no EOF
        const bool eof = biff::U16(stream.At(at)) == kEOF;
        const std::size_t end = stream.HoldRecordChain(at);
        if (end == 0) return false;
        if (eof) {
            if (!stream.Hold(0, std::min(end + 4, stream.size()))) return false;
            break;
        }
        at = end;
    }
    Workbook workbook;
    if (workbook.Read(reinterpret_cast<const char*>(stream.At(0)), stream.HeldFrom(0)) == 0) return false;
    std::vector<SheetEntry> sheets(workbook.boundSheets.size());
    std::size_t missing = 0;
    for (std::size_t i = 0; i < sheets.size(); ++i) {
        SheetEntry& entry = sheets[i];
        entry.bound = std::move(workbook.boundSheets[i]);
        const std::size_t position = entry.bound.streamPosition;
        if (position >= stream.size()) return false;
        entry.sheet = std::make_unique<Sheet>(this, i);
        GridSink sink(*entry.sheet, entry.records, workbook.sst.strings.size());
        // Only worksheets hold cells; the records of chart and macro sheets are kept as they are.
        const bool worksheet = entry.bound.sheetType == 0;
        if (entry.records.Read(stream, position, worksheet ? &sink : nullptr, &workbook.sst.strings,
                               &workbook.sst.wide) == 0)
            return false;
        missing += sink.missing();
        entry.sheet->textsLentOnly_ = !sink.ownsTexts();
    }
    missingStrings_ = missing;
    // The grids hold the values now: the shared strings are rebuilt when saving, and the sheets
    // keep their bound-sheet records.
    workbook.sst = Workbook::SharedStringTable();
    workbook.boundSheets.clear();
    workbook_ = std::move(workbook);
    sheets_ = std::move(sheets);
    return true;
}

bool Book::SaveAs(const wchar_t* filename) { return filename && SaveFile(orderview::FilePath(filename)); }
bool Book::SaveAs(const char* filename) { return filename && SaveFile(orderview::FilePath(filename)); }

struct Book::SavePlan {
    explicit SavePlan(Workbook::SharedStringTable& sst) : table(sst), strings(sst) {}
    // The shared strings are needed only while the stream is made.
    ~SavePlan() { table = Workbook::SharedStringTable(); }
    Workbook::SharedStringTable& table;
    SharedStringIndex strings;
    std::vector<CellTableWriter> tables;  // one per sheet
};

bool Book::SaveFile(const orderview::FilePath& path)
{
    // The stream is laid out before the file is touched and made as the file is written; any
    // failure leaves the file that was there as it was.
    SavePlan plan(workbook_.sst);
    const std::size_t size = PlanSave(plan);
    if (!CompoundFile::WriteSingleStream(path, L"Workbook", size, [&](const auto& put) { return WriteStream(plan, put); }))
        return false;
    path_ = path;
    return true;
}

bool Book::Save()
{
    if (path_.IsEmpty()) return false;
    std::vector<std::uint8_t> stream;
    if (!MakeStream(stream)) return false;
    CompoundFile container;
    if (!container.Open(path_, CompoundFile::Mode::ReadWrite)) return false;
    std::wstring name;
    if (!container.FindStreamNoCase(L"Workbook", name)) {
        name = L"Workbook";
        if (container.MakeFile(L"\\Workbook") != CompoundFile::kOk) return false;
    }
    return container.WriteStream(L"\\" + name, std::move(stream));
}

bool Book::SaveToMemory(std::vector<std::uint8_t>& image)
{
    SavePlan plan(workbook_.sst);
    const std::size_t size = PlanSave(plan);
    return CompoundFile::SingleStreamImage(L"Workbook", size, [&](const auto& put) { return WriteStream(plan, put); },
                                           image);
}

bool Book::MakeStream(std::vector<std::uint8_t>& stream)
{
    SavePlan plan(workbook_.sst);
    const std::size_t size = PlanSave(plan);
    if (size > 0xFFFFFFFFu) return false;  // stream positions are 32-bit
    std::vector<std::uint8_t> buffer;
    buffer.reserve(size);
    if (!WriteStream(plan, [&buffer](const void* data, std::size_t n) {
            const auto* bytes = static_cast<const std::uint8_t*>(data);
            buffer.insert(buffer.end(), bytes, bytes + n);
            return true;
        }))
        return false;
    stream = std::move(buffer);
    return true;
}

std::size_t Book::PlanSave(SavePlan& plan)
{
    if (workbook_.window1.activeSheet >= sheets_.size()) workbook_.window1.activeSheet = 0;
    plan.tables.clear();
    plan.tables.reserve(sheets_.size());
    std::uint32_t texts = 0;
    for (std::size_t s = 0; s < sheets_.size(); ++s) {
        Worksheet& ws = sheets_[s].records;
        Workbook::BoundSheet& bound = sheets_[s].bound;
        if (bound.sheetType == 0) ws.bof.type = kWorksheetSubstream;
        ws.cellTable.rowBlocks.clear();
        const bool active = s == workbook_.window1.activeSheet;
        ws.window2.options = static_cast<std::uint16_t>(active ? (ws.window2.options | 0x0600) : (ws.window2.options & ~0x0600));
        plan.tables.emplace_back(sheets_[s].sheet->Rows(), ws.rowFormats);
        CellTableWriter& table = plan.tables.back();
        texts += static_cast<std::uint32_t>(table.Plan(plan.strings));
        const bool empty = table.Empty();
        if (!empty && bound.sheetType != 0) {  // a chart or macro sheet given cells becomes a worksheet
            bound.sheetType = 0;
            ws.bof.type = kWorksheetSubstream;
        }
        ws.dimensions.firstRow = empty ? 0 : static_cast<std::uint32_t>(table.FirstRow());
        ws.dimensions.lastRowPlus1 = empty ? 0 : static_cast<std::uint32_t>(table.LastRow() + 1);
        ws.dimensions.firstCol = empty ? 0 : static_cast<std::uint16_t>(table.FirstCol());
        ws.dimensions.lastColPlus1 = empty ? 0 : static_cast<std::uint16_t>(table.LastCol() + 1);
        ws.index.firstRow = ws.dimensions.firstRow;
        ws.index.lastRowPlus1 = ws.dimensions.lastRowPlus1;
    }
    workbook_.sst.totalStrings = texts;
    // Stream positions: the globals' size comes first, so the bound sheets' records are copied
    // into them and given their positions there. The ExtSST's size depends on the string count
    // only, so it is laid out first.
    StageBoundSheets();
    workbook_.AdjustExtSSTPositions(workbook_.SharedStringTableOffset());
    std::size_t position = workbook_.RecordSize();
    for (std::size_t i = 0; i < sheets_.size(); ++i) {
        Worksheet& ws = sheets_[i].records;
        workbook_.boundSheets[i].streamPosition = sheets_[i].bound.streamPosition = static_cast<std::uint32_t>(position);
        ws.AdjustDBCellPositions(position, plan.tables[i].Blocks());
        position += ws.HeadSize() + plan.tables[i].Size() + ws.TailSize();
    }
    return position;
}

bool Book::WriteStream(SavePlan& plan, const std::function<bool(const void*, std::size_t)>& put)
{
    // Every record is checked against the size it was laid out with before its bytes go out: a
    // layout that disagrees fails here instead of writing wrong positions.
    std::vector<char> bytes;
    auto part = [&](std::size_t size, auto&& write) {
        bytes.resize(size);
        return write(bytes.data(), size) == size && put(bytes.data(), size);
    };
    bool ok = part(workbook_.RecordSize(), [&](char* p, std::size_t n) { return workbook_.Write(p, n); });
    for (std::size_t i = 0; ok && i < sheets_.size(); ++i) {
        Worksheet& ws = sheets_[i].records;
        ok = part(ws.HeadSize(), [&](char* p, std::size_t n) { return ws.WriteHead(p, n); }) &&
             plan.tables[i].Write(put) &&
             part(ws.TailSize(), [&](char* p, std::size_t n) { return ws.WriteTail(p, n); });
    }
    return ok;
}

void Book::StageBoundSheets()
{
    workbook_.boundSheets.clear();
    for (const SheetEntry& entry : sheets_) workbook_.boundSheets.push_back(entry.bound);
}

Workbook& Book::GetWorkbook()
{
    StageBoundSheets();
    return workbook_;
}

Sheet* Book::GetWorksheet(std::size_t index) { return index < sheets_.size() ? sheets_[index].sheet.get() : nullptr; }

int Book::FindSheet(const std::u16string& name) const
{
    for (std::size_t i = 0; i < sheets_.size(); ++i)
        if (EqualIgnoringAsciiCase(sheets_[i].bound.name, name)) return static_cast<int>(i);
    return -1;
}

Sheet* Book::GetWorksheet(const char* name)
{
    const int i = FindSheet(FromNarrow(name));
    return i < 0 ? nullptr : sheets_[static_cast<std::size_t>(i)].sheet.get();
}

Sheet* Book::GetWorksheet(const wchar_t* name)
{
    const int i = FindSheet(FromWide(name));
    return i < 0 ? nullptr : sheets_[static_cast<std::size_t>(i)].sheet.get();
}

Sheet* Book::AddSheet(const std::u16string& name, int index)
{
    if (!ValidName(name) || FindSheet(name) >= 0) return nullptr;
    const std::size_t at = (index < 0 || static_cast<std::size_t>(index) > sheets_.size()) ? sheets_.size()
                                                                                         : static_cast<std::size_t>(index);
    SheetEntry entry;
    entry.bound.name = name;
    entry.sheet = std::make_unique<Sheet>(this, at);
    sheets_.insert(sheets_.begin() + static_cast<std::ptrdiff_t>(at), std::move(entry));
    for (std::size_t i = at; i < sheets_.size(); ++i) sheets_[i].sheet->SetIndex(i);
    return sheets_[at].sheet.get();
}

Sheet* Book::AddWorksheet(int index)
{
    for (std::size_t n = sheets_.size() + 1;; ++n) {
        const std::u16string name = FromNarrow(("Sheet" + std::to_string(n)).c_str());
        if (FindSheet(name) < 0) return AddSheet(name, index);
    }
}

Sheet* Book::AddWorksheet(const char* name, int index) { return AddSheet(FromNarrow(name), index); }
Sheet* Book::AddWorksheet(const wchar_t* name, int index) { return AddSheet(FromWide(name), index); }

bool Book::Delete(std::size_t index)
{
    if (index >= sheets_.size()) return false;
    sheets_.erase(sheets_.begin() + static_cast<std::ptrdiff_t>(index));
    for (std::size_t i = index; i < sheets_.size(); ++i) sheets_[i].sheet->SetIndex(i);
    return true;
}

bool Book::DeleteWorksheet(std::size_t index) { return Delete(index); }

bool Book::DeleteWorksheet(const char* name)
{
    const int i = FindSheet(FromNarrow(name));
    return i >= 0 && Delete(static_cast<std::size_t>(i));
}

bool Book::DeleteWorksheet(const wchar_t* name)
{
    const int i = FindSheet(FromWide(name));
    return i >= 0 && Delete(static_cast<std::size_t>(i));
}

const char* Book::GetAnsiSheetName(std::size_t index)
{
    if (index >= sheets_.size()) return nullptr;
    ansiName_ = ToAnsi(sheets_[index].bound.name);
    return ansiName_.c_str();
}

const wchar_t* Book::GetUnicodeSheetName(std::size_t index)
{
    if (index >= sheets_.size()) return nullptr;
    wideName_ = FromUtf16(sheets_[index].bound.name);
    return wideName_.c_str();
}

bool Book::GetSheetName(std::size_t index, char* name)
{
    const char* text = GetAnsiSheetName(index);
    if (!text || !name) return false;
    std::memcpy(name, text, std::strlen(text) + 1);
    return true;
}

bool Book::GetSheetName(std::size_t index, wchar_t* name)
{
    const wchar_t* text = GetUnicodeSheetName(index);
    if (!text || !name) return false;
    std::memcpy(name, text, (wideName_.size() + 1) * sizeof(wchar_t));
    return true;
}

bool Book::Rename(std::size_t index, const std::u16string& name)
{
    if (index >= sheets_.size() || !ValidName(name)) return false;
    const int other = FindSheet(name);
    if (other >= 0 && static_cast<std::size_t>(other) != index) return false;
    sheets_[index].bound.name = name;
    return true;
}

bool Book::RenameWorksheet(std::size_t index, const char* name) { return Rename(index, FromNarrow(name)); }
bool Book::RenameWorksheet(std::size_t index, const wchar_t* name) { return Rename(index, FromWide(name)); }

bool Book::RenameWorksheet(const char* from, const char* to)
{
    const int i = FindSheet(FromNarrow(from));
    return i >= 0 && Rename(static_cast<std::size_t>(i), FromNarrow(to));
}

bool Book::RenameWorksheet(const wchar_t* from, const wchar_t* to)
{
    const int i = FindSheet(FromWide(from));
    return i >= 0 && Rename(static_cast<std::size_t>(i), FromWide(to));
}

}  // namespace xls
