// libFuzzer target: the workbook plan reader of `orderview xls make` and the book it builds.
// A plan the reader accepts must build; one it refuses must say why.
#include <cstdint>
#include <cstdlib>
#include <string>
#include <vector>

#include "xls/book.h"
#include "xls_plan.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const std::string text(reinterpret_cast<const char*>(data), size);
    std::vector<ovcli::PlanSheet> sheets;
    std::string error;
    if (!ovcli::ReadWorkbookPlan(text, sheets, error)) {
        if (error.empty()) std::abort();
        return 0;
    }
    if (sheets.empty() || sheets.size() > ovcli::kMaxPlanSheets) std::abort();
    xls::Book book;
    if (!ovcli::BuildWorkbook(sheets, book, error) && error.empty()) std::abort();
    return 0;
}
