// A binary workbook (.xls): sheets of cells, loaded from and saved to a compound file whose
// "Workbook" stream holds BIFF8 records.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "order_data/visibility.h"
#include "platform/file_system.h"
#include "xls/sheet.h"
#include "xls/workbook_records.h"
#include "xls/worksheet_records.h"

namespace xls {

class ORDERVIEW_API Book {
public:
    Book();
    explicit Book(const char* filename);
    ~Book();
    Book(const Book&) = delete;
    Book& operator=(const Book&) = delete;

    // A new workbook in memory with `sheets` sheets named "Sheet1", "Sheet2", ...
    void New(int sheets);
    // Reads a workbook file; on failure the book keeps what it held and false is returned.
    // Narrow names are in the local code page; wide names open as they are (on Windows, a name
    // the code page cannot hold).
    bool Load(const char* filename);
    bool Load(const wchar_t* filename);
    // Reads a workbook file image held in memory (the book then belongs to no file until SaveAs).
    bool LoadFromMemory(const void* data, std::size_t size);
    // Writes the workbook into the file it was loaded from or last saved as.
    bool Save();
    // Writes the workbook as a new file (replacing one of that name).
    bool SaveAs(const char* filename);
    bool SaveAs(const wchar_t* filename);
    // The file image SaveAs would write, in memory; the book stays with its file, if any.
    bool SaveToMemory(std::vector<std::uint8_t>& image);

    std::size_t GetTotalWorkSheets() const { return sheets_.size(); }
    Sheet* GetWorksheet(std::size_t index);
    Sheet* GetWorksheet(int index) { return index < 0 ? nullptr : GetWorksheet(static_cast<std::size_t>(index)); }
    Sheet* GetWorksheet(const char* name);
    Sheet* GetWorksheet(const wchar_t* name);
    // A new sheet at `index` (-1: at the end); null when the name is taken (names compare
    // without regard to ASCII letter case, as spreadsheet programs do).
    Sheet* AddWorksheet(int index = -1);
    Sheet* AddWorksheet(const char* name, int index = -1);
    Sheet* AddWorksheet(const wchar_t* name, int index = -1);
    bool DeleteWorksheet(std::size_t index);
    bool DeleteWorksheet(int index) { return index >= 0 && DeleteWorksheet(static_cast<std::size_t>(index)); }
    bool DeleteWorksheet(const char* name);
    bool DeleteWorksheet(const wchar_t* name);

    const char* GetAnsiSheetName(std::size_t index);
    const wchar_t* GetUnicodeSheetName(std::size_t index);
    bool GetSheetName(std::size_t index, char* name);
    bool GetSheetName(std::size_t index, wchar_t* name);
    bool RenameWorksheet(std::size_t index, const char* name);
    bool RenameWorksheet(std::size_t index, const wchar_t* name);
    bool RenameWorksheet(int index, const char* name) { return index >= 0 && RenameWorksheet(static_cast<std::size_t>(index), name); }
    bool RenameWorksheet(int index, const wchar_t* name) { return index >= 0 && RenameWorksheet(static_cast<std::size_t>(index), name); }
    bool RenameWorksheet(const char* from, const char* to);
    bool RenameWorksheet(const wchar_t* from, const wchar_t* to);

    // Cells of the last Load whose shared string the file's table does not hold: they are kept
    // with empty text. Non-zero means a damaged file.
    std::size_t GetMissingStringCount() const { return missingStrings_; }

    // The workbook globals behind the sheets, with a copy of each sheet's bound-sheet record
    // (the records are rebuilt from the grids on Save).
    Workbook& GetWorkbook();

private:
    // One sheet of the book: its record in the workbook globals, its substream's records and
    // its grid.
    struct SheetEntry {
        Workbook::BoundSheet bound;
        Worksheet records;
        std::unique_ptr<Sheet> sheet;
    };
    // Copies the sheets' bound-sheet records into the globals, which write them.
    void StageBoundSheets();
    Sheet* AddSheet(const std::u16string& name, int index);
    int FindSheet(const std::u16string& name) const;
    bool Rename(std::size_t index, const std::u16string& name);
    bool Delete(std::size_t index);
    // A save in two steps: PlanSave lays the stream out (shared strings, row blocks, stream
    // positions) and returns its size; WriteStream then hands its bytes to `put` in pieces.
    struct SavePlan;
    std::size_t PlanSave(SavePlan& plan);
    bool WriteStream(SavePlan& plan, const std::function<bool(const void*, std::size_t)>& put);
    // The "Workbook" stream of the book as it stands; false (and `stream` untouched) when the
    // records do not come out at the sizes they were laid out with.
    bool MakeStream(std::vector<std::uint8_t>& stream);
    bool LoadStream(class StreamWindow& stream);
    // Loads the container's workbook stream, read in place where it can be. With `mapped`, the
    // container's image mapped from `path`: a stream whose sectors lie in order is then read
    // from the file in parts instead.
    bool LoadContainer(const class CompoundFile& container, const orderview::MappedFile* mapped = nullptr,
                       const orderview::FilePath* path = nullptr);
    bool LoadFile(const orderview::FilePath& path);
    bool SaveFile(const orderview::FilePath& path);

    orderview::FilePath path_;  // the container the workbook belongs to; empty before Load or SaveAs
    Workbook workbook_;  // its bound sheets are a copy of the sheets' own, made when needed
    std::vector<SheetEntry> sheets_;
    std::size_t missingStrings_ = 0;
    std::string ansiName_;
    std::wstring wideName_;
};

}  // namespace xls
