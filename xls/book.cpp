#include "xls/book.h"

#include <algorithm>
#include <cstring>
#include <string_view>
#include <unordered_map>

#include "xls/cfb_writer.h"
#include "xls/compound_file.h"
#include "xls/utf16.h"

namespace xls {

namespace {

using RowBlock = Worksheet::CellTable::RowBlock;
using CellBlock = RowBlock::CellBlock;

constexpr std::size_t kRowsPerBlock = 32;

// A cell goes into the file when it has a value, or a format of its own (a formatted blank).
bool Written(const Cell& cell) { return cell.Type() != Cell::kUndefined || cell.GetFormat() != Cell::kDefaultFormat; }

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

// Puts the cell values of a sheet substream into a sheet's grid. Shared strings are converted
// once, the first time a cell uses them, and their cells share that one copy of the text.
class GridSink : public CellSink {
public:
    GridSink(Sheet& sheet, std::size_t sharedStrings) : sheet_(sheet), shared_(sharedStrings) {}
    void SharedText(std::uint16_t row, std::uint16_t col, std::uint16_t xf, std::uint32_t index,
                    const std::u16string& text, bool wide) override
    {
        Cell* cell = sheet_.Cell(row, col);
        if (!cell) return;
        Cell& converted = shared_[index];
        if (converted.Type() == Cell::kUndefined) {
            if (wide) {
                const std::wstring w = FromUtf16(text);
                converted.SetWString(w.data(), w.size());
            } else {
                narrow_.assign(text.begin(), text.end());  // each code unit is below 256
                converted.SetString(narrow_.data(), narrow_.size());
            }
        }
        *cell = converted;
        cell->SetFormat(xf);
    }
    // The cell stays, with empty text, and is counted.
    void MissingText(std::uint16_t row, std::uint16_t col, std::uint16_t xf, std::uint32_t) override
    {
        if (Cell* cell = At(row, col, xf)) cell->SetString("", 0);
        ++missing_;
    }
    std::size_t missing() const { return missing_; }
    void Integer(std::uint16_t row, std::uint16_t col, std::uint16_t xf, std::int32_t value) override
    {
        if (Cell* cell = At(row, col, xf)) cell->SetInteger(value);
    }
    void Double(std::uint16_t row, std::uint16_t col, std::uint16_t xf, double value) override
    {
        if (Cell* cell = At(row, col, xf)) cell->SetDouble(value);
    }
    void Logical(std::uint16_t row, std::uint16_t col, std::uint16_t xf, std::uint8_t value, bool isError) override
    {
        if (Cell* cell = At(row, col, xf)) cell->SetLogical(value, isError);
    }
    void Blank(std::uint16_t row, std::uint16_t col, std::uint16_t xf) override { At(row, col, xf); }
    void Text(std::uint16_t row, std::uint16_t col, std::uint16_t xf, const std::u16string& text, bool wide) override
    {
        Cell* cell = At(row, col, xf);
        if (!cell) return;
        if (wide) {
            const std::wstring w = FromUtf16(text);
            cell->SetWString(w.c_str(), w.size());
        } else {
            narrow_.resize(text.size());
            for (std::size_t i = 0; i < text.size(); ++i) narrow_[i] = static_cast<char>(text[i]);
            cell->SetString(narrow_.data(), narrow_.size());
        }
    }

private:
    Cell* At(std::uint16_t row, std::uint16_t col, std::uint16_t xf)
    {
        Cell* cell = sheet_.Cell(row, col);
        if (cell) cell->SetFormat(xf);
        return cell;
    }

    Sheet& sheet_;
    std::vector<Cell> shared_;  // each shared string's text as a cell, once a cell used it
    std::string narrow_;
    std::size_t missing_ = 0;
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

bool Book::LoadContainer(const CompoundFile& container)
{
    // The stream is "Workbook" in any letter case; some writers use the older name "Book".
    std::wstring name;
    if (!container.FindStreamNoCase(L"Workbook", name) && !container.FindStreamNoCase(L"Book", name)) return false;
    const std::uint8_t* stream = nullptr;
    std::size_t size = 0;
    std::vector<std::uint8_t> copy;
    return container.ViewStream(L"\\" + name, stream, size, copy) && LoadStream(stream, size);
}

bool Book::Load(const char* filename) { return filename && LoadFile(orderview::FilePath(filename)); }

bool Book::LoadFile(const orderview::FilePath& path)
{
    CompoundFile container;
    if (!container.Open(path) || !LoadContainer(container)) return false;
    path_ = path;
    return true;
}

bool Book::LoadFromMemory(const void* data, std::size_t size)
{
    CompoundFile container;
    if (!container.OpenMemory(data, size) || !LoadContainer(container)) return false;
    path_ = orderview::FilePath();
    return true;
}

bool Book::LoadStream(const std::uint8_t* stream, std::size_t size)
{
    const char* base = reinterpret_cast<const char*>(stream);
    Workbook workbook;
    if (workbook.Read(base, size) == 0) return false;
    std::vector<Worksheet> worksheets(workbook.boundSheets.size());
    std::vector<std::unique_ptr<Sheet>> sheets;
    std::size_t missing = 0;
    for (std::size_t i = 0; i < workbook.boundSheets.size(); ++i) {
        const std::size_t position = workbook.boundSheets[i].streamPosition;
        if (position >= size) return false;
        sheets.push_back(std::make_unique<Sheet>(this, i));
        GridSink sink(*sheets.back(), workbook.sst.strings.size());
        // Only worksheets hold cells; the records of chart and macro sheets are kept as they are.
        const bool worksheet = workbook.boundSheets[i].sheetType == 0;
        if (worksheets[i].Read(base + position, size - position, worksheet ? &sink : nullptr,
                               &workbook.sst.strings,
                               &workbook.sst.wide) == 0)
            return false;
        missing += sink.missing();
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

bool Book::SaveFile(const orderview::FilePath& path)
{
    // The stream is made before the file is touched, so a failure leaves any file as it was.
    std::vector<std::uint8_t> stream;
    if (!MakeStream(stream)) return false;
    CompoundFile container;
    if (!container.Create(path, L"Workbook", std::move(stream))) return false;
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
    std::vector<std::uint8_t> stream;
    if (!MakeStream(stream)) return false;
    std::vector<cfb::Entry> entries(2);
    entries[0].name = u"Root Entry";
    entries[0].type = cfb::kRoot;
    entries[0].children.push_back(1);
    entries[1].name = u"Workbook";
    entries[1].type = cfb::kStream;
    entries[1].parent = 0;
    entries[1].size = stream.size();
    entries[1].data = std::move(stream);
    image = cfb::WriteImage(entries);
    return true;
}

bool Book::MakeStream(std::vector<std::uint8_t>& stream)
{
    UpdateWorksheets();
    AdjustStreamPositions();
    std::size_t total = workbook_.RecordSize();
    for (Worksheet& ws : worksheets_) total += ws.RecordSize();
    std::vector<std::uint8_t> buffer(total);
    // Every record is checked against the room left before its bytes go in: a layout that
    // disagrees with the sizes above fails here instead of writing past the buffer.
    biff::Output out(reinterpret_cast<char*>(buffer.data()), buffer.size());
    out.Took(workbook_.Write(out.next(), out.room()));
    for (Worksheet& ws : worksheets_) out.Took(ws.Write(out.next(), out.room()));
    // The records were only needed to write the stream.
    for (Worksheet& ws : worksheets_) ws.cellTable.rowBlocks.clear();
    workbook_.sst = Workbook::SharedStringTable();
    if (!out.ok() || out.written() != total) return false;
    stream = std::move(buffer);
    return true;
}

void Book::UpdateWorksheets()
{
    Workbook::SharedStringTable& sst = workbook_.sst;
    sst = Workbook::SharedStringTable();
    // Keys are views of the cells' own text, which outlives this function.
    std::unordered_map<std::string_view, std::uint32_t> narrowIndex;
    std::unordered_map<std::wstring_view, std::uint32_t> wideIndex;
    std::uint32_t total = 0;
    auto narrowString = [&](const Cell& cell) {
        const std::string_view key(cell.GetString(), cell.GetStringLength());
        const auto found = narrowIndex.emplace(key, static_cast<std::uint32_t>(sst.strings.size()));
        if (found.second) {
            std::u16string text(key.size(), u'\0');
            for (std::size_t i = 0; i < key.size(); ++i) text[i] = static_cast<unsigned char>(key[i]);
            sst.strings.push_back(std::move(text));
            sst.wide.push_back(false);
        }
        return found.first->second;
    };
    auto wideString = [&](const Cell& cell) {
        const std::wstring_view key(cell.GetWString(), cell.GetStringLength());
        const auto found = wideIndex.emplace(key, static_cast<std::uint32_t>(sst.strings.size()));
        if (found.second) {
            sst.strings.push_back(ToUtf16(std::wstring(key)));
            sst.wide.push_back(true);
        }
        return found.first->second;
    };

    if (workbook_.window1.activeSheet >= sheets_.size()) workbook_.window1.activeSheet = 0;
    for (std::size_t s = 0; s < sheets_.size(); ++s) {
        Worksheet& ws = worksheets_[s];
        Workbook::BoundSheet& bound = workbook_.boundSheets[s];
        if (bound.sheetType == 0) ws.bof.type = 0x0010;
        ws.cellTable.rowBlocks.clear();
        const bool active = s == workbook_.window1.activeSheet;
        ws.window2.options = static_cast<std::uint16_t>(active ? (ws.window2.options | 0x0600) : (ws.window2.options & ~0x0600));
        std::size_t firstRow = SIZE_MAX, lastRow = 0, firstCol = SIZE_MAX, lastCol = 0;
        RowBlock* block = nullptr;
        std::size_t blockStart = SIZE_MAX;
        // Rows with cells, and rows read with a Row record of their own (height, format) even
        // when they hold no cell.
        const auto& grid = sheets_[s]->Rows();
        // Room for every block up front (at most one per 32 rows that hold cells or a format), so
        // that blocks are never copied as the list grows.
        auto blocksOf = [](const auto& rows) {
            std::size_t blocks = 0, previous = SIZE_MAX;
            for (const auto& row : rows)
                if (row.first / kRowsPerBlock != previous) {
                    ++blocks;
                    previous = row.first / kRowsPerBlock;
                }
            return blocks;
        };
        ws.cellTable.rowBlocks.reserve(blocksOf(grid) + blocksOf(ws.rowFormats));
        auto cellRow = grid.begin();
        auto formatRow = ws.rowFormats.begin();
        static const Sheet::Row kNoCells;
        while (cellRow != grid.end() || formatRow != ws.rowFormats.end()) {
            const bool fromGrid = formatRow == ws.rowFormats.end() ||
                                  (cellRow != grid.end() && cellRow->first <= formatRow->first);
            const std::size_t r = fromGrid ? cellRow->first : formatRow->first;
            const Sheet::Row& cells = fromGrid ? cellRow->second : kNoCells;
            const bool formatted = formatRow != ws.rowFormats.end() && formatRow->first == r;
            if (fromGrid) ++cellRow;
            if (formatted) ++formatRow;
            std::size_t first = SIZE_MAX, last = 0;
            for (std::size_t c = 0; c < cells.size(); ++c)
                if (Written(cells[c])) {
                    if (first == SIZE_MAX) first = c;
                    last = c;
                }
            if (first == SIZE_MAX && !formatted) continue;  // nothing to write for this row
            if (!block || r / kRowsPerBlock != blockStart) {
                ws.cellTable.rowBlocks.emplace_back();
                block = &ws.cellTable.rowBlocks.back();
                blockStart = r / kRowsPerBlock;
                block->cells.reserve(kRowsPerBlock * 18 * sheets_[s]->GetTotalCols());
            }
            const auto format = ws.rowFormats.find(static_cast<std::uint16_t>(r));
            RowBlock::Row row = format != ws.rowFormats.end() ? format->second : RowBlock::Row();
            row.row = static_cast<std::uint16_t>(r);
            block->firstCellOfRow.push_back(block->cells.size());
            if (first == SIZE_MAX) {  // a row of its own format and height only
                row.firstCol = row.lastColPlus1 = 0;
                block->rows.push_back(row);
                continue;
            }
            row.firstCol = static_cast<std::uint16_t>(first);
            row.lastColPlus1 = static_cast<std::uint16_t>(last + 1);
            block->rows.push_back(row);
            for (std::size_t c = first; c <= last; ++c) {
                const Cell& cell = cells[c];
                const auto row16 = static_cast<std::uint16_t>(r), col16 = static_cast<std::uint16_t>(c);
                const std::uint16_t xf = cell.GetFormat();
                std::uint32_t rk = 0;
                switch (cell.Type()) {
                case Cell::kInteger:
                    if (cell.IsBoolean() || cell.IsError())
                        CellBlock::BoolErr::Append(block->cells, row16, col16, xf,
                                                   static_cast<std::uint8_t>(cell.GetInteger()), cell.IsError() ? 1 : 0);
                    else if (CellBlock::RK::EncodeInteger(cell.GetInteger(), rk))
                        CellBlock::RK::Append(block->cells, row16, col16, xf, rk);
                    else
                        CellBlock::Number::Append(block->cells, row16, col16, xf, cell.GetInteger());
                    break;
                case Cell::kDouble: CellBlock::Number::Append(block->cells, row16, col16, xf, cell.GetDouble()); break;
                case Cell::kString:
                    CellBlock::LabelSST::Append(block->cells, row16, col16, xf, narrowString(cell));
                    ++total;
                    break;
                case Cell::kWString:
                    CellBlock::LabelSST::Append(block->cells, row16, col16, xf, wideString(cell));
                    ++total;
                    break;
                default:
                    if (xf != Cell::kDefaultFormat) CellBlock::Blank::Append(block->cells, row16, col16, xf);
                    break;
                }
            }
            if (firstRow == SIZE_MAX) firstRow = r;
            lastRow = r;
            firstCol = std::min(firstCol, first);
            lastCol = std::max(lastCol, last);
        }
        const bool empty = firstRow == SIZE_MAX;
        if (!empty && bound.sheetType != 0) {  // a chart or macro sheet given cells becomes a worksheet
            bound.sheetType = 0;
            ws.bof.type = 0x0010;
        }
        ws.dimensions.firstRow = empty ? 0 : static_cast<std::uint32_t>(firstRow);
        ws.dimensions.lastRowPlus1 = empty ? 0 : static_cast<std::uint32_t>(lastRow + 1);
        ws.dimensions.firstCol = empty ? 0 : static_cast<std::uint16_t>(firstCol);
        ws.dimensions.lastColPlus1 = empty ? 0 : static_cast<std::uint16_t>(lastCol + 1);
        ws.index.firstRow = ws.dimensions.firstRow;
        ws.index.lastRowPlus1 = ws.dimensions.lastRowPlus1;
    }
    sst.totalStrings = total;
}

void Book::AdjustStreamPositions()
{
    // The ExtSST's size depends on the string count only, so it is laid out first.
    workbook_.AdjustExtSSTPositions(workbook_.SharedStringTableOffset());
    std::size_t position = workbook_.RecordSize();
    for (std::size_t i = 0; i < worksheets_.size(); ++i) {
        workbook_.boundSheets[i].streamPosition = static_cast<std::uint32_t>(position);
        worksheets_[i].AdjustDBCellPositions(position);
        position += worksheets_[i].RecordSize();
    }
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
