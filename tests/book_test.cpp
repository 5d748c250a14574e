#include <gtest/gtest.h>

#include <algorithm>
#include <climits>
#include <cmath>
#include <filesystem>
#include <map>
#include <random>
#include <sstream>

#include "support/temp_folder.h"
#include "xls/book.h"
#include "xls/compound_file.h"

namespace {

using xls::Book;
using xls::Cell;

TEST(CellValue, GettersFollowTheType)
{
    Cell cell;
    int i = 7;
    double d = 7;
    char narrow[8];
    wchar_t wide[8];
    EXPECT_EQ(cell.Type(), Cell::kUndefined);
    EXPECT_FALSE(cell.Get(i));
    cell.Set(2.75);
    EXPECT_TRUE(cell.Get(i));  // a double cut toward zero
    EXPECT_EQ(i, 2);
    cell.Set(-2.75);
    EXPECT_EQ(cell.GetInteger(), -2);
    cell.Set(1e300);
    EXPECT_EQ(cell.GetInteger(), INT_MAX);
    cell.Set(std::nan(""));
    EXPECT_FALSE(cell.Get(i));
    cell.Set(42);
    EXPECT_TRUE(cell.Get(d));
    EXPECT_EQ(d, 42.0);
    EXPECT_FALSE(cell.Get(narrow));
    cell.Set(L"wide");
    EXPECT_FALSE(cell.Get(narrow));
    EXPECT_TRUE(cell.Get(wide));
    EXPECT_STREQ(wide, L"wide");
    cell.Set("");
    EXPECT_TRUE(cell.Get(narrow));
    EXPECT_STREQ(narrow, "");
    EXPECT_EQ(cell.Type(), Cell::kString);
    cell.SetString("a\0b", 3);
    EXPECT_EQ(cell.GetStringLength(), 3u);
    Cell copy = cell;
    EXPECT_EQ(std::string(copy.GetString(), 3), std::string("a\0b", 3));
    Cell moved = std::move(copy);
    EXPECT_EQ(copy.Type(), Cell::kUndefined);
    EXPECT_EQ(moved.GetStringLength(), 3u);
    moved.EraseContents();
    EXPECT_EQ(moved.Type(), Cell::kUndefined);
    EXPECT_STREQ(moved.GetString(), "");
    EXPECT_EQ(sizeof(Cell), 16u);
}

// Copies share one block of text: each must still read its own value after the other changes,
// is erased or is destroyed, and a cell may take its text from its own.
TEST(CellValue, CopiesKeepTheirTextWhateverHappensToTheOthers)
{
    auto original = std::make_unique<Cell>();
    original->Set("shared text");
    Cell copy = *original;
    Cell assigned;
    assigned.Set(L"wide before");
    assigned = copy;
    std::vector<Cell> row(3, copy);
    original->Set(L"changed");
    EXPECT_STREQ(copy.GetString(), "shared text");
    original.reset();
    row[1].EraseContents();
    row[2].SetString(row[2].GetString() + 7);
    EXPECT_STREQ(row[2].GetString(), "text");
    for (const Cell* cell : {&copy, &assigned, &row[0]}) {
        EXPECT_EQ(cell->Type(), Cell::kString);
        EXPECT_STREQ(cell->GetString(), "shared text");
    }
    Cell wide;
    wide.Set(L"wide text");
    Cell wideCopy = wide;
    wide = wide;
    wide.SetWString(wide.GetWString() + 5);
    EXPECT_STREQ(wide.GetWString(), L"text");
    EXPECT_STREQ(wideCopy.GetWString(), L"wide text");
    EXPECT_EQ(wideCopy.GetStringLength(), 9u);
}

TEST(SheetGrid, LimitsAndGrowth)
{
    Book book;
    book.New(1);
    xls::Sheet* sheet = book.GetWorksheet(0);
    ASSERT_NE(sheet, nullptr);
    EXPECT_NE(sheet->Cell(65535, 255), nullptr);
    EXPECT_EQ(sheet->Cell(65536, 0), nullptr);
    EXPECT_EQ(sheet->Cell(0, 256), nullptr);
    EXPECT_EQ(sheet->GetTotalRows(), 65536u);
    EXPECT_EQ(sheet->GetTotalCols(), 256u);
    sheet->Cell(3, 4)->Set(5);
    EXPECT_EQ(sheet->Cell(3, 4)->GetInteger(), 5);  // a cell keeps its value
    EXPECT_TRUE(sheet->EraseCell(3, 4));
    EXPECT_EQ(sheet->Cell(3, 4)->Type(), Cell::kUndefined);
    EXPECT_TRUE(sheet->EraseCell(100, 100));  // inside the used range, never touched
    Book other;
    other.New(1);
    EXPECT_FALSE(other.GetWorksheet(0)->EraseCell(0, 0));  // outside the (empty) used range
    // Reserving is a hint: past the limits it is cut, and it changes no cell or range.
    xls::Sheet* reserved = other.GetWorksheet(0);
    reserved->Reserve(static_cast<std::size_t>(-1), static_cast<std::size_t>(-1));
    EXPECT_EQ(reserved->GetTotalRows(), 0u);
    EXPECT_EQ(reserved->GetTotalCols(), 0u);
    EXPECT_EQ(reserved->FindCell(0, 0), nullptr);
    reserved->Cell(2, 1)->Set("kept");
    reserved->Reserve(65536, 256);
    EXPECT_STREQ(reserved->Cell(2, 1)->GetString(), "kept");
    EXPECT_EQ(reserved->GetTotalRows(), 3u);
    EXPECT_EQ(reserved->GetTotalCols(), 2u);
    // Finding a cell never grows the sheet: only cells of rows it holds are found.
    EXPECT_EQ(reserved->FindCell(2, 1), reserved->Cell(2, 1));
    EXPECT_NE(reserved->FindCell(2, 0), nullptr);
    EXPECT_EQ(reserved->FindCell(0, 0), nullptr);  // a row below the last one, never touched
    EXPECT_EQ(reserved->FindCell(2, 2), nullptr);
    EXPECT_EQ(reserved->FindCell(3, 0), nullptr);
    const xls::Sheet& constant = *reserved;
    EXPECT_EQ(constant.FindCell(65536, 256), nullptr);
    EXPECT_EQ(reserved->GetTotalRows(), 3u);
    EXPECT_EQ(reserved->GetTotalCols(), 2u);
}

// Rows widen and move as cells are touched in any order; every cell keeps its value, and cells
// copied from one another share text that outlives the original.
TEST(SheetGrid, CellsKeepTheirValuesWhateverTheOrderOfFilling)
{
    std::mt19937 random(11);
    for (const char* order : {"by rows", "by columns", "at random"}) {
        SCOPED_TRACE(order);
        Book book;
        book.New(1);
        xls::Sheet* sheet = book.GetWorksheet(0);
        std::map<std::pair<std::size_t, std::size_t>, int> model;
        const std::size_t rows = 1500, cols = 40;  // past the point where the row table is reserved whole
        for (std::size_t i = 0; i < rows * cols / 2; ++i) {
            std::size_t r = i / cols, c = i % cols;
            if (order[3] == 'c') r = i % rows, c = i / rows;
            if (order[0] == 'a') r = random() % rows, c = random() % cols;
            const int value = static_cast<int>(random() % 1000);
            Cell* cell = sheet->Cell(r, c);
            ASSERT_NE(cell, nullptr);
            if (value % 2)
                cell->Set(value);
            else
                cell->Set(std::to_string(value).c_str());
            model[{r, c}] = value;
        }
        for (const auto& [at, value] : model) {
            const Cell* cell = sheet->Cell(at.first, at.second);
            if (value % 2)
                ASSERT_EQ(cell->GetInteger(), value) << at.first << "," << at.second;
            else
                ASSERT_STREQ(cell->GetString(), std::to_string(value).c_str()) << at.first << "," << at.second;
        }
        std::size_t counted = 0;
        for (const auto& row : sheet->Rows())
            for (const Cell& cell : row.cells) counted += cell.Type() != Cell::kUndefined;
        EXPECT_EQ(counted, model.size());
    }
}

TEST(SheetList, NamesAddRenameDelete)
{
    Book book;
    book.New(3);
    ASSERT_EQ(book.GetTotalWorkSheets(), 3u);
    for (int i = 0; i < 3; ++i) EXPECT_STREQ(book.GetAnsiSheetName(static_cast<std::size_t>(i)), ("Sheet" + std::to_string(i + 1)).c_str());
    EXPECT_EQ(book.AddWorksheet("Sheet2"), nullptr);
    EXPECT_EQ(book.AddWorksheet("sheet2"), nullptr);  // names compare without letter case
    EXPECT_EQ(book.AddWorksheet("bad:name"), nullptr);
    EXPECT_EQ(book.AddWorksheet(std::string(32, 'n').c_str()), nullptr);
    xls::Sheet* first = book.AddWorksheet(L"\u5de5\u4f5c\u8868", 0);
    ASSERT_NE(first, nullptr);
    EXPECT_EQ(book.GetWorksheet(0), first);
    EXPECT_STREQ(book.GetUnicodeSheetName(0), L"\u5de5\u4f5c\u8868");
    EXPECT_STREQ(book.GetAnsiSheetName(0), "???");
    EXPECT_EQ(book.GetWorksheet(L"\u5de5\u4f5c\u8868"), first);
    xls::Sheet* unnamed = book.AddWorksheet();
    ASSERT_NE(unnamed, nullptr);
    EXPECT_STREQ(unnamed->GetAnsiSheetName(), "Sheet5");
    EXPECT_FALSE(book.RenameWorksheet("Sheet1", "Sheet3"));
    EXPECT_TRUE(book.RenameWorksheet("Sheet1", "SHEET1"));  // its own name in another case
    EXPECT_TRUE(book.RenameWorksheet(1, "Orders"));
    EXPECT_EQ(book.GetWorksheet("orders")->Index(), 1u);
    EXPECT_TRUE(book.DeleteWorksheet("Sheet2"));
    EXPECT_FALSE(book.DeleteWorksheet("Sheet2"));
    EXPECT_FALSE(book.DeleteWorksheet(99));
    EXPECT_EQ(book.GetTotalWorkSheets(), 4u);
    EXPECT_EQ(book.GetWorksheet("Sheet3")->Index(), 2u);
    char name[32];
    EXPECT_TRUE(book.GetSheetName(2, name));
    EXPECT_STREQ(name, "Sheet3");
    EXPECT_FALSE(book.GetSheetName(10, name));
}

TEST(BookFile, SaveAndLoadKeepEveryValueAndType)
{
    ovtest::TempFolder folder;
    const std::string path = folder.File("book.xls");
    {
        Book book;
        book.New(2);
        xls::Sheet* sheet = book.GetWorksheet(0);
        sheet->Cell(0, 0)->Set(123);
        sheet->Cell(0, 1)->Set(-(1 << 29));
        sheet->Cell(0, 2)->Set(1 << 29);  // too large for an RK integer
        sheet->Cell(1, 0)->Set(3.141592653589793);
        sheet->Cell(1, 1)->Set(5.0);
        sheet->Cell(2, 0)->Set("narrow \xE9");
        sheet->Cell(2, 1)->Set(L"wide \u4e2d");
        sheet->Cell(2, 2)->Set("narrow \xE9");  // shared
        // Longer than a part of the string table: split between characters, with their widths.
        sheet->Cell(3, 0)->Set(std::string(20000, 'L').c_str());
        sheet->Cell(3, 1)->Set((L"\u4e2d" + std::wstring(9000, L'W')).c_str());
        sheet->Cell(65535, 255)->Set(9);
        book.GetWorksheet(1)->Cell(5, 5)->Set(L"second");
        // SaveToMemory writes the bytes SaveAs writes, and gives the book no file.
        std::vector<std::uint8_t> image;
        ASSERT_TRUE(book.SaveToMemory(image));
        EXPECT_FALSE(book.Save());
        ASSERT_TRUE(book.SaveAs(path.c_str()));
        EXPECT_EQ(folder.Read("book.xls"), std::string(image.begin(), image.end()));
    }
    Book book;
    ASSERT_TRUE(book.Load(path.c_str()));
    ASSERT_EQ(book.GetTotalWorkSheets(), 2u);
    xls::Sheet* sheet = book.GetWorksheet("Sheet1");
    EXPECT_EQ(sheet->Cell(0, 0)->Type(), Cell::kInteger);
    EXPECT_EQ(sheet->Cell(0, 0)->GetInteger(), 123);
    EXPECT_EQ(sheet->Cell(0, 1)->GetInteger(), -(1 << 29));
    EXPECT_EQ(sheet->Cell(0, 2)->Type(), Cell::kDouble);
    EXPECT_EQ(sheet->Cell(0, 2)->GetDouble(), 1 << 29);
    EXPECT_EQ(sheet->Cell(1, 0)->GetDouble(), 3.141592653589793);
    EXPECT_EQ(sheet->Cell(1, 1)->Type(), Cell::kDouble);
    EXPECT_STREQ(sheet->Cell(2, 0)->GetString(), "narrow \xE9");
    EXPECT_EQ(sheet->Cell(2, 1)->Type(), Cell::kWString);
    EXPECT_STREQ(sheet->Cell(2, 1)->GetWString(), L"wide \u4e2d");
    EXPECT_EQ(sheet->Cell(3, 0)->GetString(), std::string(20000, 'L'));
    EXPECT_EQ(sheet->Cell(3, 1)->GetWString(), L"\u4e2d" + std::wstring(9000, L'W'));
    EXPECT_EQ(sheet->Cell(65535, 255)->GetInteger(), 9);
    EXPECT_STREQ(book.GetWorksheet(1)->Cell(5, 5)->GetWString(), L"second");
    // Save writes back into the same file.
    sheet->Cell(0, 0)->Set(456);
    ASSERT_TRUE(book.Save());
    Book again(path.c_str());
    EXPECT_EQ(again.GetWorksheet(0)->Cell(0, 0)->GetInteger(), 456);
    std::ostringstream printed;
    again.GetWorksheet(0)->Print(printed, ';', '\'');
    const std::string firstLine = printed.str().substr(0, printed.str().find('\n'));
    EXPECT_EQ(firstLine.substr(0, 25), "456;-536870912;536870912;");
    EXPECT_EQ(std::count(firstLine.begin(), firstLine.end(), ';'), 255);  // 256 columns in use
    EXPECT_NE(printed.str().find("'narrow \xE9';'wide \xE4\xB8\xAD';'narrow \xE9'"), std::string::npos);
}

// Wide names open as they are: a folder and a file whose names no single-byte code page holds.
TEST(BookFile, WideNamesOutsideTheCodePage)
{
    ovtest::TempFolder temp;
    const std::filesystem::path folder = std::filesystem::path(temp.path()) / std::filesystem::u8path(u8"\u6CE8\u6587 \u00D8rder");
    ASSERT_TRUE(std::filesystem::create_directory(folder));
    const std::wstring path = std::wstring(temp.path().begin(), temp.path().end()) + L"\\\u6CE8\u6587 \u00D8rder\\\u7D04\u5B9A \u00E9.xls";
    {
        Book book;
        book.New(1);
        book.GetWorksheet(0)->Cell(0, 0)->Set(L"\u682A");
        ASSERT_TRUE(book.SaveAs(path.c_str()));
    }
    EXPECT_TRUE(std::filesystem::is_regular_file(folder / std::filesystem::u8path(u8"\u7D04\u5B9A \u00E9.xls")));
    Book book;
    ASSERT_TRUE(book.Load(path.c_str()));
    EXPECT_STREQ(book.GetWorksheet(0)->Cell(0, 0)->GetWString(), L"\u682A");
    book.GetWorksheet(0)->Cell(0, 1)->Set(7);
    ASSERT_TRUE(book.Save());  // back into the file it came from
    Book again;
    ASSERT_TRUE(again.Load(path.c_str()));
    EXPECT_EQ(again.GetWorksheet(0)->Cell(0, 1)->GetInteger(), 7);
    EXPECT_FALSE(again.Load((path + L".missing").c_str()));
}

TEST(BookFile, FailuresKeepTheBookAsItWas)
{
    ovtest::TempFolder folder;
    Book book;
    book.New(2);
    book.GetWorksheet(0)->Cell(0, 0)->Set(1);
    folder.Write("junk.xls", "not a workbook at all");
    EXPECT_FALSE(book.Load(folder.File("junk.xls").c_str()));
    EXPECT_FALSE(book.Load(folder.File("missing.xls").c_str()));
    {
        xls::CompoundFile container;  // a container without a workbook stream
        ASSERT_TRUE(container.Create(folder.File("empty.xls")));
    }
    EXPECT_FALSE(book.Load(folder.File("empty.xls").c_str()));
    EXPECT_EQ(book.GetTotalWorkSheets(), 2u);
    EXPECT_EQ(book.GetWorksheet(0)->Cell(0, 0)->GetInteger(), 1);
}

// The records that describe a sheet's layout agree with its cells: the used range in the
// Dimensions, and Index entries that point at each row block's DBCell, which points back at the
// block's first Row record. Readers find rows through them.
TEST(BookMemory, LayoutRecordsDescribeTheCells)
{
    Book book;
    book.New(2);
    xls::Sheet* sheet = book.GetWorksheet(1);
    for (std::size_t r = 3; r <= 40; ++r)
        for (std::size_t c = 2; c <= 4; ++c) sheet->Cell(r, c)->Set(static_cast<int>(r * 10 + c));
    sheet->Cell(20, 3)->Set("text");
    book.GetWorksheet(0)->Cell(0, 0)->Set(1.5);
    std::vector<std::uint8_t> image;
    ASSERT_TRUE(book.SaveToMemory(image));
    xls::CompoundFile container;
    std::vector<std::uint8_t> bytes;
    ASSERT_TRUE(container.OpenMemory(image.data(), image.size()));
    ASSERT_TRUE(container.ReadStream(L"\\Workbook", bytes));
    const char* stream = reinterpret_cast<const char*>(bytes.data());
    xls::Workbook globals;
    ASSERT_GT(globals.Read(stream, bytes.size()), 0u);
    ASSERT_EQ(globals.boundSheets.size(), 2u);
    const std::size_t at = globals.boundSheets[1].streamPosition;
    ASSERT_LT(at, bytes.size());
    xls::Worksheet ws;
    ASSERT_GT(ws.Read(stream + at, bytes.size() - at, nullptr), 0u);
    EXPECT_EQ(ws.dimensions.firstRow, 3u);
    EXPECT_EQ(ws.dimensions.lastRowPlus1, 41u);
    EXPECT_EQ(ws.dimensions.firstCol, 2u);
    EXPECT_EQ(ws.dimensions.lastColPlus1, 5u);
    EXPECT_EQ(ws.index.firstRow, 3u);
    EXPECT_EQ(ws.index.lastRowPlus1, 41u);
    ASSERT_EQ(ws.index.dbCellPositions.size(), 2u);  // rows 3-31 and 32-40
    auto u16 = [&](std::size_t p) { return static_cast<unsigned>(bytes[p] | bytes[p + 1] << 8); };
    for (const std::uint32_t dbCell : ws.index.dbCellPositions) {
        ASSERT_LT(dbCell + 8u, bytes.size());
        EXPECT_EQ(u16(dbCell), 0x00D7u);  // DBCell
        const std::uint32_t back = u16(dbCell + 4) | u16(dbCell + 6) << 16;
        ASSERT_LE(back, dbCell);
        EXPECT_EQ(u16(dbCell - back), 0x0208u);  // the block's first Row record
    }
}

TEST(BookMemory, ACellPointingPastTheStringTableStaysEmptyAndIsCounted)
{
    Book book;
    book.New(1);
    book.GetWorksheet(0)->Cell(0, 0)->Set("first");
    book.GetWorksheet(0)->Cell(1, 0)->Set("second");
    std::vector<std::uint8_t> image;
    ASSERT_TRUE(book.SaveToMemory(image));
    Book intact;
    ASSERT_TRUE(intact.LoadFromMemory(image.data(), image.size()));
    EXPECT_EQ(intact.GetMissingStringCount(), 0u);
    // The LabelSST record of row 1, column 0 (format 15) gets string index 7 of a table of 2.
    const std::uint8_t label[] = {0xFD, 0x00, 0x0A, 0x00, 0x01, 0x00, 0x00, 0x00, 0x0F, 0x00, 0x01, 0x00, 0x00, 0x00};
    auto at = std::search(image.begin(), image.end(), std::begin(label), std::end(label));
    ASSERT_NE(at, image.end());
    at[10] = 7;
    Book damaged;
    ASSERT_TRUE(damaged.LoadFromMemory(image.data(), image.size()));
    EXPECT_EQ(damaged.GetMissingStringCount(), 1u);
    const Cell* cell = damaged.GetWorksheet(0)->Cell(1, 0);
    EXPECT_EQ(cell->Type(), Cell::kString);
    EXPECT_STREQ(cell->GetString(), "");
    EXPECT_STREQ(damaged.GetWorksheet(0)->Cell(0, 0)->GetString(), "first");
    damaged.New(1);
    EXPECT_EQ(damaged.GetMissingStringCount(), 0u);
    {
        // Read through its rows only, the sheet is never changed: going, it must still let go of
        // the empty text the damaged cell holds (the leak checker of the sanitizer build sees it).
        Book readOnly;
        ASSERT_TRUE(readOnly.LoadFromMemory(image.data(), image.size()));
        std::vector<std::string> texts;
        for (const auto& row : readOnly.GetWorksheet(0)->Rows()) texts.push_back(row.cells[0].GetString());
        EXPECT_EQ(texts, (std::vector<std::string>{"first", ""}));
    }
}

// A shared string is lent to its cells while a sheet loads and their holds are counted at the
// end; a cell that a later record of the same position overwrites gives its hold back first.
TEST(BookMemory, ACellOverwrittenWhileLoadingLeavesItsTextWithTheOthers)
{
    Book book;
    book.New(1);
    xls::Sheet* sheet = book.GetWorksheet(0);
    sheet->Cell(0, 0)->Set("shared");
    sheet->Cell(0, 1)->Set("shared");
    sheet->Cell(0, 2)->Set("other");
    sheet->Cell(1, 0)->Set("shared");
    sheet->Cell(2, 0)->Set("other");
    sheet->Cell(2, 1)->Set(2.123456789);  // a Number record (no RK holds it)
    sheet->Cell(3, 0)->Set(7.123456789);
    sheet->Cell(3, 1)->Set("shared");
    std::vector<std::uint8_t> image;
    ASSERT_TRUE(book.SaveToMemory(image));
    // Cell records (format 15) moved from column `col` of `row` onto column 0: the cell (0, 0)
    // gets "shared" twice and then "other"; (2, 0) a number after a text, (3, 0) a text after a
    // number.
    const auto moveToColumn0 = [&](std::uint16_t code, std::uint8_t length, std::uint8_t row, std::uint8_t col) {
        const std::uint8_t record[] = {static_cast<std::uint8_t>(code), static_cast<std::uint8_t>(code >> 8), length, 0x00,
                                       row, 0x00, col, 0x00, 0x0F, 0x00};
        auto at = std::search(image.begin(), image.end(), std::begin(record), std::end(record));
        ASSERT_NE(at, image.end()) << int(row) << "," << int(col);
        at[6] = 0;
    };
    moveToColumn0(0x00FD, 10, 0, 1);  // LabelSST
    moveToColumn0(0x00FD, 10, 0, 2);
    moveToColumn0(0x0203, 14, 2, 1);  // Number
    moveToColumn0(0x00FD, 10, 3, 1);
    std::vector<Cell> copies;
    {
        Book loaded;
        ASSERT_TRUE(loaded.LoadFromMemory(image.data(), image.size()));
        xls::Sheet* back = loaded.GetWorksheet(0);
        EXPECT_STREQ(back->Cell(0, 0)->GetString(), "other");
        EXPECT_STREQ(back->Cell(1, 0)->GetString(), "shared");
        EXPECT_EQ(back->Cell(2, 0)->Type(), Cell::kDouble);
        EXPECT_EQ(back->Cell(2, 0)->GetDouble(), 2.123456789);
        EXPECT_STREQ(back->Cell(3, 0)->GetString(), "shared");
        copies.push_back(*back->Cell(0, 0));
        copies.push_back(*back->Cell(1, 0));
        back->Cell(1, 0)->Set(1);  // the last cell of "shared" in the sheet lets go of it
    }
    // The copies outlive the book that lent them their text.
    EXPECT_STREQ(copies[0].GetString(), "other");
    EXPECT_STREQ(copies[1].GetString(), "shared");
}

// A loaded sheet lends each shared string's text to its cells and holds it once for them: every
// way a cell leaves the sheet (copied, moved, copied into another book) takes a hold of its own,
// and cells moved within the sheet as its rows widen keep their texts. Each way has a text of its
// own, so that no other holder keeps a text alive for it.
TEST(BookMemory, LoadedTextsOutliveTheirSheetInEveryCopyAndMove)
{
    const auto narrow = [](int row) { return "narrow " + std::to_string(row); };
    const auto wide = [](int row) { return L"wide \u20AC " + std::to_wstring(row); };
    Book book;
    book.New(2);
    for (int r = 0; r < 6; ++r)
        for (std::size_t s = 0; s < 2; ++s)
            for (std::size_t c = 0; c < 3; ++c) {  // each text in three cells
                book.GetWorksheet(s)->Cell(r, c)->Set(narrow(r).c_str());
                book.GetWorksheet(s)->Cell(r, 3 + c)->Set(wide(r).c_str());
            }
    std::vector<std::uint8_t> image;
    ASSERT_TRUE(book.SaveToMemory(image));

    Book target;
    target.New(1);
    Cell copyAssigned, moveAssigned, wideMoved;
    std::vector<Cell> constructed;  // by copy, then by move
    constructed.reserve(2);
    {
        Book loaded;
        ASSERT_TRUE(loaded.LoadFromMemory(image.data(), image.size()));
        xls::Sheet* sheet = loaded.GetWorksheet(0);
        copyAssigned = *sheet->Cell(0, 0);
        moveAssigned = std::move(*sheet->Cell(1, 0));
        constructed.push_back(*sheet->Cell(2, 0));
        constructed.push_back(std::move(*sheet->Cell(3, 0)));
        *target.GetWorksheet(0)->Cell(0, 0) = *sheet->Cell(4, 0);
        wideMoved = std::move(*sheet->Cell(5, 3));
        // Row 5 widens past its room: its cells move to new memory within the sheet.
        sheet->Cell(5, 200)->Set(1);
        EXPECT_EQ(sheet->Cell(5, 0)->GetString(), narrow(5));
        EXPECT_EQ(sheet->Cell(5, 4)->GetWString(), wide(5));
        sheet->Cell(5, 0)->Set(2.5);  // a lent cell overwritten
        EXPECT_EQ(sheet->Cell(5, 0)->GetDouble(), 2.5);
        EXPECT_EQ(sheet->Cell(5, 1)->GetString(), narrow(5));
        ASSERT_TRUE(loaded.DeleteWorksheet(std::size_t{1}));  // the other sheet lent the same texts
        EXPECT_EQ(sheet->Cell(5, 5)->GetWString(), wide(5));
    }
    const std::pair<const Cell*, int> narrowCells[] = {
        {&copyAssigned, 0}, {&moveAssigned, 1}, {&constructed[0], 2}, {&constructed[1], 3}, {target.GetWorksheet(0)->Cell(0, 0), 4}};
    for (const auto& [cell, row] : narrowCells) {
        EXPECT_EQ(cell->Type(), Cell::kString) << row;
        EXPECT_EQ(cell->GetString(), narrow(row));
    }
    EXPECT_EQ(wideMoved.Type(), Cell::kWString);
    EXPECT_EQ(wideMoved.GetWString(), wide(5));
    // The copies hold their texts as any cell does: they change and go independently.
    Cell again = moveAssigned;
    moveAssigned.Set("changed");
    EXPECT_EQ(again.GetString(), narrow(1));
}

TEST(BookMemory, CellsKeepTheirFormatAndLogicalValues)
{
    Book book;
    book.New(1);
    xls::Sheet* sheet = book.GetWorksheet(0);
    sheet->Cell(0, 0)->SetFormat(20);
    sheet->Cell(0, 0)->Set(1.5);
    sheet->Cell(0, 1)->SetLogical(1, false);
    sheet->Cell(0, 2)->SetLogical(0x2A, true);  // #N/A
    sheet->Cell(0, 3)->SetFormat(18);            // a formatted blank
    sheet->Cell(0, 4)->Set("plain");
    std::vector<std::uint8_t> image;
    ASSERT_TRUE(book.SaveToMemory(image));
    Book loaded;
    ASSERT_TRUE(loaded.LoadFromMemory(image.data(), image.size()));
    xls::Sheet* back = loaded.GetWorksheet(0);
    EXPECT_EQ(back->Cell(0, 0)->GetFormat(), 20);
    EXPECT_EQ(back->Cell(0, 0)->GetDouble(), 1.5);
    EXPECT_TRUE(back->Cell(0, 1)->IsBoolean());
    EXPECT_EQ(back->Cell(0, 1)->GetInteger(), 1);
    EXPECT_TRUE(back->Cell(0, 2)->IsError());
    EXPECT_EQ(back->Cell(0, 2)->GetInteger(), 0x2A);
    EXPECT_EQ(back->Cell(0, 3)->Type(), Cell::kUndefined);
    EXPECT_EQ(back->Cell(0, 3)->GetFormat(), 18);
    EXPECT_EQ(back->Cell(0, 4)->GetFormat(), Cell::kDefaultFormat);
    // Setting a value keeps the format and ends the boolean.
    back->Cell(0, 0)->Set("text now");
    back->Cell(0, 1)->Set(7);
    EXPECT_EQ(back->Cell(0, 0)->GetFormat(), 20);
    EXPECT_FALSE(back->Cell(0, 1)->IsBoolean());
    Cell copy = *back->Cell(0, 2);
    EXPECT_TRUE(copy.IsError());
    EXPECT_EQ(copy.GetFormat(), Cell::kDefaultFormat);
}

}  // namespace
