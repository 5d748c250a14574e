#include "list_output.h"

#include "progress.h"

namespace ovcli {

namespace {

// Length of the UTF-8 sequence at text[i], or 0 when it is not a well-formed one.
std::size_t Utf8Length(std::string_view text, std::size_t i)
{
    const auto byte = [&](std::size_t k) { return static_cast<unsigned char>(text[k]); };
    const unsigned char lead = byte(i);
    std::size_t length;
    unsigned min;
    unsigned code;
    if (lead < 0x80) return 1;
    if (lead >= 0xC2 && lead <= 0xDF) length = 2, min = 0x80, code = lead & 0x1Fu;
    else if (lead >= 0xE0 && lead <= 0xEF) length = 3, min = 0x800, code = lead & 0x0Fu;
    else if (lead >= 0xF0 && lead <= 0xF4) length = 4, min = 0x10000, code = lead & 0x07u;
    else return 0;
    if (i + length > text.size()) return 0;
    for (std::size_t k = 1; k < length; ++k) {
        if ((byte(i + k) & 0xC0) != 0x80) return 0;
        code = (code << 6) | (byte(i + k) & 0x3Fu);
    }
    if (code < min || code > 0x10FFFF || (code >= 0xD800 && code <= 0xDFFF)) return 0;
    return length;
}

}  // namespace

void AppendCsvField(std::string& out, std::string_view text)
{
    if (text.find_first_of(",\"\r\n") == std::string_view::npos) {
        out += text;
        return;
    }
    out += '"';
    for (char c : text) {
        if (c == '"') out += '"';
        out += c;
    }
    out += '"';
}

void AppendJsonString(std::string& out, std::string_view text)
{
    static const char kHex[] = "0123456789abcdef";
    out += '"';
    for (std::size_t i = 0; i < text.size();) {
        // A run of printable ASCII goes as it is.
        std::size_t plain = i;
        while (plain < text.size() && text[plain] >= 0x20 && text[plain] < 0x7F && text[plain] != '"' &&
               text[plain] != '\\')
            ++plain;
        if (plain > i) {
            out.append(text, i, plain - i);
            i = plain;
            continue;
        }
        const unsigned char c = static_cast<unsigned char>(text[i]);
        if (c == '"' || c == '\\') {
            out += '\\';
            out += static_cast<char>(c);
        } else if (c == '\n') {
            out += "\\n";
        } else if (c == '\r') {
            out += "\\r";
        } else if (c == '\t') {
            out += "\\t";
        } else if (c < 0x20 || c == 0x7F) {
            out += "\\u00";
            out += kHex[c >> 4];
            out += kHex[c & 15];
        } else if (c >= 0x80) {
            const std::size_t length = Utf8Length(text, i);
            if (length == 0) {
                out += "\xEF\xBF\xBD";
                ++i;
            } else {
                out.append(text, i, length);
                i += length;
            }
            continue;
        }
        ++i;
    }
    out += '"';
}

std::string JsonColumnsLine(const std::vector<std::string>& keys, const std::vector<std::string>& headings)
{
    std::string line = "{\"columns\":[";
    for (std::size_t c = 0; c < keys.size(); ++c) {
        if (c) line += ',';
        line += "{\"key\":";
        AppendJsonString(line, keys[c]);
        line += ",\"heading\":";
        AppendJsonString(line, c < headings.size() ? headings[c] : std::string());
        line += '}';
    }
    line += "]}\n";
    return line;
}

bool WriteCsv(const OrderList& list, LineOutput& out, bool byteOrderMark, Progress* progress)
{
    const int columns = list.GetColumnCount();
    std::string line = byteOrderMark ? "\xEF\xBB\xBF" : "";
    for (int c = 0; c < columns; ++c) {
        if (c) line += ',';
        AppendCsvField(line, list.GetColumnText(c).str());
    }
    line += "\r\n";
    if (!out.Put(line)) return false;
    for (int r = 0; list.ReachRow(r); ++r) {
        line.clear();
        for (int c = 0; c < columns; ++c) {
            if (c) line += ',';
            AppendCsvField(line, list.CellText(r, c));
        }
        line += "\r\n";
        if (progress) progress->BeforeOutput();
        if (!out.Put(line)) return false;
        if (progress) progress->Step(static_cast<std::size_t>(r) + 1);
    }
    return out.Flush();
}

bool WriteJsonLines(const OrderList& list, const std::vector<std::string>& keys, LineOutput& out,
                    Progress* progress)
{
    const int columns = list.GetColumnCount();
    std::vector<std::string> headings;
    for (int c = 0; c < columns; ++c) headings.push_back(list.GetColumnText(c).str());
    if (!out.Put(JsonColumnsLine(keys, headings))) return false;
    std::vector<std::string> quotedKeys;
    for (const std::string& key : keys) {
        std::string quoted;
        AppendJsonString(quoted, key);
        quotedKeys.push_back(quoted + ':');
    }
    std::string line;
    for (int r = 0; list.ReachRow(r); ++r) {
        line = "{";
        for (int c = 0; c < columns && static_cast<std::size_t>(c) < quotedKeys.size(); ++c) {
            if (c) line += ',';
            line += quotedKeys[static_cast<std::size_t>(c)];
            AppendJsonString(line, list.CellText(r, c));
        }
        line += "}\n";
        if (progress) progress->BeforeOutput();
        if (!out.Put(line)) return false;
        if (progress) progress->Step(static_cast<std::size_t>(r) + 1);
    }
    return out.Flush();
}

}  // namespace ovcli
