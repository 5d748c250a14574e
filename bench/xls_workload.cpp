// The spreadsheet workload of the peer comparison: one sheet of 65,536 rows x 10 columns (an
// integer, six doubles, three strings drawn from 5,000 distinct texts).
//
//   xls_workload write OUT    builds the sheet and saves it
//   xls_workload load IN      loads it and sums the cells (so nothing is skipped)
//   xls_workload bound IN     reads IN as xls_floor does and fills a sheet of the workload's
//                             size with numbers, parsing nothing, then sums the cells: what
//                             Load costs this program before it parses a record
//   xls_workload scale OUT    saves the sheet cut to 8,192 ... 65,536 rows and prints the median
//                             time of 5 saves of each (in one process, so the heap is warm)
#include <algorithm>
#include <chrono>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <string>
#include <vector>

#include "word_sum.h"
#include "xls/book.h"

namespace {

constexpr int kRows = 65536;

std::vector<std::string> Texts()
{
    std::vector<std::string> texts;
    for (int i = 0; i < 5000; ++i) texts.push_back("text value " + std::to_string(i * 7919 % 100000));
    return texts;
}

void Fill(xls::Book& book, int rows)
{
    const std::vector<std::string> texts = Texts();
    book.New(1);
    xls::Sheet* sheet = book.GetWorksheet(0);
    for (int r = 0; r < rows; ++r) {
        sheet->Cell(r, 0)->SetInteger(r);
        for (int c = 1; c <= 6; ++c) sheet->Cell(r, c)->SetDouble(r * 1.5 + c / 7.0);
        for (int c = 7; c <= 9; ++c) {
            const std::string& text = texts[static_cast<std::size_t>((r * 31 + c) % 5000)];
            sheet->Cell(r, c)->SetString(text.data(), text.size());
        }
    }
}

int Write(const char* file)
{
    xls::Book book;
    Fill(book, kRows);
    return book.SaveAs(file) ? 0 : 1;
}

int Scale(const char* file)
{
    for (int rows = 8192; rows <= kRows; rows *= 2) {
        xls::Book book;
        Fill(book, rows);
        std::vector<double> ms;
        for (int run = 0; run < 5; ++run) {
            std::remove(file);
            const auto start = std::chrono::steady_clock::now();
            if (!book.SaveAs(file)) return 1;
            ms.push_back(std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - start).count());
        }
        std::sort(ms.begin(), ms.end());
        std::printf("%6d rows: %.1f ms\n", rows, ms[2]);
    }
    return 0;
}

// Sums the cells of the book's first sheet, so that no load can skip them; 0 when the sheet
// holds the workload's cells.
int SumCells(xls::Book& book)
{
    double sum = 0;
    std::size_t cells = 0;
    for (const auto& row : book.GetWorksheet(0)->Rows())
        for (const xls::Cell& cell : row.cells) {
            sum += cell.GetDouble() + static_cast<double>(cell.GetStringLength());
            ++cells;
        }
    std::printf("%zu cells, sum %.6g\n", cells, sum);
    return cells == static_cast<std::size_t>(kRows) * 10 ? 0 : 1;
}

int Load(const char* file)
{
    xls::Book book;
    if (!book.Load(file)) return 1;
    return SumCells(book);
}

int Bound(const char* file)
{
    // The file in 64 KiB parts, unbuffered (each part is one read), summed eight bytes at a time.
    std::FILE* in = std::fopen(file, "rb");
    if (!in) return 1;
    std::setvbuf(in, nullptr, _IONBF, 0);
    static unsigned char buffer[64 * 1024];
    std::uint64_t sum = 0;
    std::size_t got = 0;
    while ((got = std::fread(buffer, 1, sizeof buffer, in)) > 0) sum += SumWords(buffer, got);
    std::fclose(in);
    // The grid Load would fill, reserved as Load reserves it, one number a cell. The book is
    // left to the end of the process: a loaded sheet lets its cells go without visiting them,
    // and one filled with numbers would destroy them one by one.
    auto* book = new xls::Book;
    book->New(1);
    xls::Sheet* sheet = book->GetWorksheet(0);
    sheet->Reserve(kRows, 10);
    for (int r = 0; r < kRows; ++r)
        for (int c = 0; c < 10; ++c) sheet->Cell(r, c)->SetDouble(static_cast<double>((sum >> c) & 0xFF) + r);
    return SumCells(*book);
}

}  // namespace

int main(int argc, char** argv)
{
    if (argc == 3 && std::strcmp(argv[1], "write") == 0) return Write(argv[2]);
    if (argc == 3 && std::strcmp(argv[1], "load") == 0) return Load(argv[2]);
    if (argc == 3 && std::strcmp(argv[1], "bound") == 0) return Bound(argv[2]);
    if (argc == 3 && std::strcmp(argv[1], "scale") == 0) return Scale(argv[2]);
    std::fprintf(stderr, "usage: xls_workload write OUT | load IN | bound IN | scale OUT\n");
    return 2;
}
