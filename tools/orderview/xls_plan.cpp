#include "xls_plan.h"

#include <cmath>
#include <limits>

#include <nlohmann/json.hpp>

#include "xls/book.h"
#include "xls/utf16.h"

namespace ovcli {

namespace {

using nlohmann::json;

// Whole number in [min, max] (integer JSON numbers only: 1e20 and 2.5 are not).
bool WholeNumber(const json& value, long long min, long long max, long long& out)
{
    if (value.is_number_unsigned()) {
        const auto n = value.get<unsigned long long>();
        if (n > static_cast<unsigned long long>(max)) return false;
        out = static_cast<long long>(n);
        return out >= min;
    }
    if (!value.is_number_integer()) return false;
    const auto n = value.get<long long>();
    if (n < min || n > max) return false;
    out = n;
    return true;
}

bool ReadCell(const json& item, PlanCell& cell, std::string& error)
{
    if (!item.is_array() || item.size() != 4) {
        error = "a cell is [row, col, kind, value]";
        return false;
    }
    long long row = 0, col = 0;
    if (!WholeNumber(item[0], 0, 65535, row)) {
        error = "the row is not a whole number from 0 to 65535";
        return false;
    }
    if (!WholeNumber(item[1], 0, 255, col)) {
        error = "the column is not a whole number from 0 to 255";
        return false;
    }
    cell.row = static_cast<std::size_t>(row);
    cell.col = static_cast<std::size_t>(col);
    const json& value = item[3];
    const std::string kind = item[2].is_string() ? item[2].get<std::string>() : std::string();
    if (kind == "int") {
        long long n = 0;
        if (!WholeNumber(value, std::numeric_limits<int>::min(), std::numeric_limits<int>::max(), n)) {
            error = "an int cell holds a whole number from -2147483648 to 2147483647";
            return false;
        }
        cell.kind = PlanCell::Kind::Int;
        cell.integer = static_cast<int>(n);
    } else if (kind == "double") {
        if (!value.is_number() || !std::isfinite(value.get<double>())) {
            error = "a double cell holds a finite number";
            return false;
        }
        cell.kind = PlanCell::Kind::Double;
        cell.number = value.get<double>();
    } else if (kind == "text" || kind == "wtext") {
        if (!value.is_string()) {
            error = "a " + kind + " cell holds a string";
            return false;
        }
        cell.text = value.get<std::string>();
        cell.kind = kind == "text" ? PlanCell::Kind::Text : PlanCell::Kind::WideText;
        if (kind == "text")
            for (char16_t unit : xls::Utf8ToUtf16(cell.text))
                if (unit > 0xFF) {
                    error = "a text cell holds characters U+0000 to U+00FF only (wtext holds any)";
                    return false;
                }
    } else {
        error = "the kind is \"int\", \"double\", \"text\" or \"wtext\"";
        return false;
    }
    return true;
}

}  // namespace

bool ReadWorkbookPlan(const std::string& text, std::vector<PlanSheet>& sheets, std::string& error)
{
    sheets.clear();
    if (text.size() > kMaxPlanBytes) {
        error = "larger than " + std::to_string(kMaxPlanBytes >> 20) + " MiB";
        return false;
    }
    json plan;
    try {
        plan = json::parse(text);
    } catch (const json::parse_error& e) {
        error = "not JSON (at byte " + std::to_string(e.byte) + ")";
        return false;
    } catch (const json::exception&) {
        error = "not JSON this reader takes (a number out of range?)";
        return false;
    }
    if (!plan.is_object() || !plan.contains("sheets") || !plan["sheets"].is_array()) {
        error = "not a plan: {\"sheets\": [...]} expected";
        return false;
    }
    const json& list = plan["sheets"];
    if (list.empty() || list.size() > kMaxPlanSheets) {
        error = "a plan has 1 to " + std::to_string(kMaxPlanSheets) + " sheets";
        return false;
    }
    for (std::size_t s = 0; s < list.size(); ++s) {
        const json& sheet = list[s];
        const std::string where = "sheets[" + std::to_string(s) + "]";
        if (!sheet.is_object() || !sheet.contains("name") || !sheet["name"].is_string()) {
            error = where + ": the name is not a string";
            return false;
        }
        PlanSheet read;
        read.name = sheet["name"].get<std::string>();
        if (sheet.contains("cells")) {
            const json& cells = sheet["cells"];
            if (!cells.is_array()) {
                error = where + ".cells: not an array";
                return false;
            }
            read.cells.resize(cells.size());
            for (std::size_t c = 0; c < cells.size(); ++c) {
                if (!ReadCell(cells[c], read.cells[c], error)) {
                    error = where + ".cells[" + std::to_string(c) + "]: " + error;
                    return false;
                }
            }
        }
        sheets.push_back(std::move(read));
    }
    return true;
}

bool BuildWorkbook(const std::vector<PlanSheet>& sheets, xls::Book& book, std::string& error)
{
    book.New(1);
    for (std::size_t s = 0; s < sheets.size(); ++s) {
        const std::wstring name = xls::FromUtf16(xls::Utf8ToUtf16(sheets[s].name));
        xls::Sheet* sheet = s == 0 ? book.GetWorksheet(std::size_t{0}) : book.AddWorksheet(name.c_str());
        if (sheet && s == 0 && !sheet->Rename(name.c_str())) sheet = nullptr;
        if (!sheet) {
            error = "sheets[" + std::to_string(s) + "]: a workbook does not take the sheet name \"" + sheets[s].name + "\"";
            return false;
        }
        for (const PlanCell& planned : sheets[s].cells) {
            xls::Cell* cell = sheet->Cell(planned.row, planned.col);
            if (!cell) {
                error = "sheets[" + std::to_string(s) + "]: no cell at row " + std::to_string(planned.row) +
                        ", column " + std::to_string(planned.col);
                return false;
            }
            switch (planned.kind) {
            case PlanCell::Kind::Int: cell->SetInteger(planned.integer); break;
            case PlanCell::Kind::Double: cell->SetDouble(planned.number); break;
            case PlanCell::Kind::WideText:
            {
                const std::wstring wide = xls::FromUtf16(xls::Utf8ToUtf16(planned.text));
                cell->SetWString(wide.c_str(), wide.size());
                break;
            }
            case PlanCell::Kind::Text: {
                std::string bytes;
                for (char16_t unit : xls::Utf8ToUtf16(planned.text)) bytes += static_cast<char>(unit);
                cell->SetString(bytes.data(), bytes.size());
                break;
            }
            }
        }
    }
    return true;
}

}  // namespace ovcli
