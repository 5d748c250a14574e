#include "xls/book.h"

#include <algorithm>
#include <cstdint>
#include <cstring>

#include "xls/cell_table_writer.h"
#include "xls/compound_file.h"
#include "xls/stream_window.h"
#include "xls/text_holds.h"
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

#if defined(__GNUC__) || defined(__clang__)
#define NOINLINE __attribute__((noinline))
#elif defined(_MSC_VER)
#define NOINLINE __declspec(noinline)
#else
#define NOINLINE
#endif

// Puts the cell values of a sheet substream into a sheet's grid. Shared strings are converted
// once, the first time a cell uses them, and their cells share that one copy of the text.
class GridSink : public CellSink {
public:
    // `records` is the sheet substream being read into `sheet`.
    GridSink(Sheet& sheet, const Worksheet& records, std::size_t sharedStrings)
        : sheet_(sheet), records_(records), shared_(new TextHolds[sharedStrings]), sharedCount_(sharedStrings)
    {
    }
    // The sheet keeps the texts it was lent.
    ~GridSink()
    {
        TextHolds::HandTo(shared_.get(), sharedCount_, sheet_);
    }
    GridSink(const GridSink&) = delete;
    GridSink& operator=(const GridSink&) = delete;
    // The common cells, a number or a converted shared string into a cell the sheet holds
    // already with no text to release, are stored without a call.
    void SharedText(std::uint16_t row, std::uint16_t col, std::uint16_t xf, std::uint32_t index,
                    std::u16string_view text, bool wide) override
    {
        TextHolds& converted = shared_[index];
        Cell* cell = sheet_.FindCell(row, col);
        if (!cell || converted.empty() || cell->Type() >= Cell::kString)
            return NewSharedText(row, col, xf, converted, text, wide);
        converted.LendTo(*cell, xf);
    }
    void Integer(std::uint16_t row, std::uint16_t col, std::uint16_t xf, std::int32_t value) override
    {
        Cell* cell = sheet_.FindCell(row, col);
        if (!cell || cell->Type() >= Cell::kString) return NewInteger(row, col, xf, value);
        cell->SetFormat(xf);
        cell->SetInteger(value);
    }
    void Double(std::uint16_t row, std::uint16_t col, std::uint16_t xf, double value) override
    {
        Cell* cell = sheet_.FindCell(row, col);
        if (!cell || cell->Type() >= Cell::kString) return NewDouble(row, col, xf, value);
        cell->SetFormat(xf);
        cell->SetDouble(value);
    }
    // The cell stays, with empty text, and is counted.
    void MissingText(std::uint16_t row, std::uint16_t col, std::uint16_t xf, std::uint32_t) override
    {
        if (Cell* cell = At(row, col, xf)) cell->SetString("", 0);
        ownsTexts_ = true;
        ++missing_;
    }
    std::size_t missing() const { return missing_; }
    // Whether a cell was given a text of its own, not one lent to it.
    bool ownsTexts() const { return ownsTexts_; }
    void Logical(std::uint16_t row, std::uint16_t col, std::uint16_t xf, std::uint8_t value, bool isError) override
    {
        if (Cell* cell = At(row, col, xf)) cell->SetLogical(value, isError);
    }
    void Blank(std::uint16_t row, std::uint16_t col, std::uint16_t xf) override { At(row, col, xf); }
    void Text(std::uint16_t row, std::uint16_t col, std::uint16_t xf, const std::u16string& text, bool wide) override
    {
        Cell* cell = At(row, col, xf);
        if (!cell) return;
        ownsTexts_ = true;
        if (wide) {
            const std::wstring w = FromUtf16(text);
            cell->SetWString(w.c_str(), w.size());
        } else {
            const std::string& narrow = Narrow(text);
            cell->SetString(narrow.data(), narrow.size());
        }
    }

private:
    // The rare paths of the common cells, kept out of them so that those save no registers: a
    // new cell (the sheet grows), a cell that holds text already, a string's first use.
    NOINLINE void NewSharedText(std::uint16_t row, std::uint16_t col, std::uint16_t xf, TextHolds& converted,
                                std::u16string_view text, bool wide)
    {
        Cell* cell = CellAt(row, col);
        if (!cell) return;
        if (converted.empty()) {
            if (wide) {
                const std::wstring w = FromUtf16(text);
                converted.SetWString(w.data(), w.size());
            } else {
                const std::string& narrow = Narrow(text);
                converted.SetString(narrow.data(), narrow.size());
            }
        }
        converted.LendTo(*cell, xf);
    }
    NOINLINE void NewInteger(std::uint16_t row, std::uint16_t col, std::uint16_t xf, std::int32_t value)
    {
        if (Cell* cell = At(row, col, xf)) cell->SetInteger(value);
    }
    NOINLINE void NewDouble(std::uint16_t row, std::uint16_t col, std::uint16_t xf, double value)
    {
        if (Cell* cell = At(row, col, xf)) cell->SetDouble(value);
    }
    Cell* At(std::uint16_t row, std::uint16_t col, std::uint16_t xf)
    {
        Cell* cell = CellAt(row, col);
        if (cell) cell->SetFormat(xf);
        return cell;
    }
    // Text stored 8-bit, each code unit below 256, as bytes (in a buffer reused from cell to cell).
    const std::string& Narrow(std::u16string_view text)
    {
        narrow_.resize(text.size());
        for (std::size_t i = 0; i < text.size(); ++i) narrow_[i] = static_cast<char>(text[i]);
        return narrow_;
    }
    // Before its first cell, the sheet reserves the used range the file declares (the
    // Dimensions record comes before the cells).
    Cell* CellAt(std::uint16_t row, std::uint16_t col)
    {
        if (!reserved_) {
            sheet_.Reserve(records_.dimensions.lastRowPlus1, records_.dimensions.lastColPlus1);
            reserved_ = true;
        }
        return sheet_.Cell(row, col);
    }

    Sheet& sheet_;
    const Worksheet& records_;
    bool reserved_ = false;
    std::unique_ptr<TextHolds[]> shared_;  // each shared string's text, once a cell used it
    std::size_t sharedCount_;
    std::string narrow_;
    std::size_t missing_ = 0;
    bool ownsTexts_ = false;
};

}  // namespace

Book::Book()
{
    workbook_.boundSheets.clear();
}

Book::Book(const char* filename) : Book() { Load(filename); }

Book::~Book() = default;

void Book::New(int sheets)
{
    missingStrings_ = 0;
    workbook_.Reset();
    worksheets_.assign(1, Worksheet());
    sheets_.clear();
    sheets_.push_back(std::make_unique<Sheet>(this, 0));
    for (int i = 1; i < sheets; ++i) {
        for (std::size_t n = sheets_.size() + 1;; ++n) {
            const std::string name = "Sheet" + std::to_string(n);
            if (AddWorksheet(name.c_str())) break;
        }
    }
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
        const bool eof = biff::U16(stream.At(at)) == 0x000A;
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
    std::vector<Worksheet> worksheets(workbook.boundSheets.size());
    std::vector<std::unique_ptr<Sheet>> sheets;
    std::size_t missing = 0;
    for (std::size_t i = 0; i < workbook.boundSheets.size(); ++i) {
        const std::size_t position = workbook.boundSheets[i].streamPosition;
        if (position >= stream.size()) return false;
        sheets.push_back(std::make_unique<Sheet>(this, i));
        GridSink sink(*sheets.back(), worksheets[i], workbook.sst.strings.size());
        // Only worksheets hold cells; the records of chart and macro sheets are kept as they are.
        const bool worksheet = workbook.boundSheets[i].sheetType == 0;
        if (worksheets[i].Read(stream, position, worksheet ? &sink : nullptr, &workbook.sst.strings,
                               &workbook.sst.wide) == 0)
            return false;
        missing += sink.missing();
        sheets.back()->textsLentOnly_ = !sink.ownsTexts();
    }
    missingStrings_ = missing;
    // The grids hold the values now: the shared strings are rebuilt when saving.
    workbook.sst = Workbook::SharedStringTable();
    workbook_ = std::move(workbook);
    worksheets_ = std::move(worksheets);
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
        Worksheet& ws = worksheets_[s];
        Workbook::BoundSheet& bound = workbook_.boundSheets[s];
        if (bound.sheetType == 0) ws.bof.type = 0x0010;
        ws.cellTable.rowBlocks.clear();
        const bool active = s == workbook_.window1.activeSheet;
        ws.window2.options = static_cast<std::uint16_t>(active ? (ws.window2.options | 0x0600) : (ws.window2.options & ~0x0600));
        plan.tables.emplace_back(sheets_[s]->Rows(), ws.rowFormats);
        CellTableWriter& table = plan.tables.back();
        texts += static_cast<std::uint32_t>(table.Plan(plan.strings));
        const bool empty = table.Empty();
        if (!empty && bound.sheetType != 0) {  // a chart or macro sheet given cells becomes a worksheet
            bound.sheetType = 0;
            ws.bof.type = 0x0010;
        }
        ws.dimensions.firstRow = empty ? 0 : static_cast<std::uint32_t>(table.FirstRow());
        ws.dimensions.lastRowPlus1 = empty ? 0 : static_cast<std::uint32_t>(table.LastRow() + 1);
        ws.dimensions.firstCol = empty ? 0 : static_cast<std::uint16_t>(table.FirstCol());
        ws.dimensions.lastColPlus1 = empty ? 0 : static_cast<std::uint16_t>(table.LastCol() + 1);
        ws.index.firstRow = ws.dimensions.firstRow;
        ws.index.lastRowPlus1 = ws.dimensions.lastRowPlus1;
    }
    workbook_.sst.totalStrings = texts;
    // Stream positions. The ExtSST's size depends on the string count only, so it is laid out first.
    workbook_.AdjustExtSSTPositions(workbook_.SharedStringTableOffset());
    std::size_t position = workbook_.RecordSize();
    for (std::size_t i = 0; i < worksheets_.size(); ++i) {
        workbook_.boundSheets[i].streamPosition = static_cast<std::uint32_t>(position);
        worksheets_[i].AdjustDBCellPositions(position, plan.tables[i].Blocks());
        position += worksheets_[i].HeadSize() + plan.tables[i].Size() + worksheets_[i].TailSize();
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
    for (std::size_t i = 0; ok && i < worksheets_.size(); ++i) {
        Worksheet& ws = worksheets_[i];
        ok = part(ws.HeadSize(), [&](char* p, std::size_t n) { return ws.WriteHead(p, n); }) &&
             plan.tables[i].Write(put) &&
             part(ws.TailSize(), [&](char* p, std::size_t n) { return ws.WriteTail(p, n); });
    }
    return ok;
}

Sheet* Book::GetWorksheet(std::size_t index) { return index < sheets_.size() ? sheets_[index].get() : nullptr; }

int Book::FindSheet(const std::u16string& name) const
{
    for (std::size_t i = 0; i < workbook_.boundSheets.size(); ++i)
        if (EqualIgnoringAsciiCase(workbook_.boundSheets[i].name, name)) return static_cast<int>(i);
    return -1;
}

Sheet* Book::GetWorksheet(const char* name)
{
    const int i = FindSheet(FromNarrow(name));
    return i < 0 ? nullptr : sheets_[static_cast<std::size_t>(i)].get();
}

Sheet* Book::GetWorksheet(const wchar_t* name)
{
    const int i = FindSheet(FromWide(name));
    return i < 0 ? nullptr : sheets_[static_cast<std::size_t>(i)].get();
}

Sheet* Book::AddSheet(const std::u16string& name, int index)
{
    if (!ValidName(name) || FindSheet(name) >= 0) return nullptr;
    const std::size_t at = (index < 0 || static_cast<std::size_t>(index) > sheets_.size()) ? sheets_.size()
                                                                                         : static_cast<std::size_t>(index);
    Workbook::BoundSheet bound;
    bound.name = name;
    workbook_.boundSheets.insert(workbook_.boundSheets.begin() + static_cast<std::ptrdiff_t>(at), bound);
    worksheets_.insert(worksheets_.begin() + static_cast<std::ptrdiff_t>(at), Worksheet());
    sheets_.insert(sheets_.begin() + static_cast<std::ptrdiff_t>(at), std::make_unique<Sheet>(this, at));
    for (std::size_t i = at; i < sheets_.size(); ++i) sheets_[i]->SetIndex(i);
    return sheets_[at].get();
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
    workbook_.boundSheets.erase(workbook_.boundSheets.begin() + static_cast<std::ptrdiff_t>(index));
    worksheets_.erase(worksheets_.begin() + static_cast<std::ptrdiff_t>(index));
    sheets_.erase(sheets_.begin() + static_cast<std::ptrdiff_t>(index));
    for (std::size_t i = index; i < sheets_.size(); ++i) sheets_[i]->SetIndex(i);
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
    if (index >= workbook_.boundSheets.size()) return nullptr;
    ansiName_ = ToAnsi(workbook_.boundSheets[index].name);
    return ansiName_.c_str();
}

const wchar_t* Book::GetUnicodeSheetName(std::size_t index)
{
    if (index >= workbook_.boundSheets.size()) return nullptr;
    wideName_ = FromUtf16(workbook_.boundSheets[index].name);
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
    workbook_.boundSheets[index].name = name;
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
