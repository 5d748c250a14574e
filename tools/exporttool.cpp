// exporttool: exports a list described in JSON the way the order screens do.
//
//   exporttool text|html|unoffset|workbook PLAN
//
// PLAN: {"columns": [[heading, format], ...], "rows": [[cell, ...], ...], "title": ...,
//        "sheet": ..., "second": {"columns": ..., "rows": ...},
//        "user": {"name": ..., "branch": ..., "main_branch": ..., "account": ...}}
// format is the column's format bits (0 left, 1 right, 2 center). Texts are written as their
// UTF-8 bytes. The file is the one named by ORDERVIEW_SAVE_AS (the save-as dialog of the system
// platform); text exports choose CSV or text by its extension. The main folder, with the
// template "sys/xls_head.txt", is ORDERVIEW_HOME.
// Exit status: 0 done, 1 failed, 2 usage.
#include <cstdio>
#include <cstring>
#include <fstream>
#include <string>

#include <nlohmann/json.hpp>

#include "export/list_export.h"

namespace {

using nlohmann::json;

void Fill(orderview::MemoryListCtrl& list, const json& plan)
{
    for (const json& column : plan.value("columns", json::array()))
        list.InsertColumn(column.at(0).get<std::string>(), column.size() > 1 ? column.at(1).get<int>() : 0);
    for (const json& row : plan.value("rows", json::array())) {
        std::vector<CString> cells;
        for (const json& cell : row) cells.emplace_back(cell.get<std::string>());
        list.InsertItem(cells);
    }
}

}  // namespace

int main(int argc, char** argv)
{
    if (argc != 3) {
        std::fprintf(stderr, "usage: exporttool text|html|unoffset|workbook PLAN\n");
        return 2;
    }
    std::ifstream in(argv[2]);
    json plan;
    try {
        plan = json::parse(in);
    } catch (const json::exception& e) {
        std::fprintf(stderr, "exporttool: %s: %s\n", argv[2], e.what());
        return 1;
    }
    orderview::MemoryListCtrl list, second;
    Fill(list, plan);
    Fill(second, plan.value("second", json::object()));
    const json user = plan.value("user", json::object());
    CBaseOrder_UserInfo info;
    info.csName = user.value("name", "");
    info.csBranchNo = user.value("branch", "");
    info.csMainBranchNo = user.value("main_branch", "");
    info.csAccount = user.value("account", "");
    const CString title = plan.value("title", "");
    const std::string mode = argv[1];
    if (mode == "text") {
        g_DataExport(list);
    } else if (mode == "html") {
        g_DataExportXls(list, title, "", &info);
    } else if (mode == "unoffset") {
        g_UnoffsetDataExportXls(list, second, title, "", &info, plan.contains("second"));
    } else if (mode == "workbook") {
        if (!g_DataExportWorkbook(list, plan.value("sheet", "Sheet1").c_str())) {
            std::fprintf(stderr, "exporttool: the workbook was not written\n");
            return 1;
        }
    } else {
        std::fprintf(stderr, "exporttool: unknown format %s\n", argv[1]);
        return 2;
    }
    return 0;
}
