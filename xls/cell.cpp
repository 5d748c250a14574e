#include "xls/cell.h"

#include <atomic>
#include <climits>
#include <cmath>
#include <cstring>
#include <cwchar>
#include <new>

#include "xls/sheet.h"
#include "xls/detail/text_holds.h"

namespace xls {

namespace {

// A string cell's text is one heap block shared by the cell and its copies: this header, then
// the characters and a terminator. The text of a block never changes; a new value makes a new
// block. Loading a workbook thus keeps one block per distinct shared string, not one per cell.
// The header is kept to 4 bytes, so that a short text (up to 19 narrow characters) takes the
// smallest heap block.
struct TextHeader {
    std::atomic<std::uint32_t> holders{1};
};
static_assert(sizeof(TextHeader) % alignof(wchar_t) == 0, "the characters follow the header aligned");

template <class Char>
Char* NewText(const Char* text, std::size_t length)
{
    void* block = ::operator new(sizeof(TextHeader) + (length + 1) * sizeof(Char));
    new (block) TextHeader();
    Char* chars = reinterpret_cast<Char*>(static_cast<char*>(block) + sizeof(TextHeader));
    if (length) std::memcpy(chars, text, length * sizeof(Char));
    chars[length] = Char();
    return chars;
}

TextHeader* HeaderOf(void* chars) { return reinterpret_cast<TextHeader*>(static_cast<char*>(chars) - sizeof(TextHeader)); }

// Counts one more holder of the text; false when the count is full (the caller copies instead).
bool Share(void* chars)
{
    constexpr std::uint32_t kMostHolders = 0x80000000u;  // far below wrapping, even with racing copies
    std::atomic<std::uint32_t>& holders = HeaderOf(chars)->holders;
    if (holders.fetch_add(1, std::memory_order_relaxed) < kMostHolders) return true;
    holders.fetch_sub(1, std::memory_order_relaxed);
    return false;
}

void Drop(void* chars)
{
    TextHeader* header = HeaderOf(chars);
    if (header->holders.fetch_sub(1, std::memory_order_acq_rel) != 1) return;
    header->~TextHeader();
    ::operator delete(header);
}

}  // namespace

void Cell::Release()
{
    if (logical_ != kLent) {
        if (type_ == kString) Drop(value_.s);
        if (type_ == kWString) Drop(value_.w);
    }
    type_ = kUndefined;
    logical_ = kNotLogical;
    length_ = 0;
    value_.i = 0;
}

void Cell::CopyFrom(const Cell& other)
{
    xf_ = other.xf_;
    type_ = other.type_;
    value_ = other.value_;
    logical_ = type_ >= kString ? std::uint8_t{kNotLogical} : other.logical_;
    length_ = 0;
    if (type_ == kString) {
        length_ = other.length_;
        if (!Share(value_.s)) value_.s = NewText(other.value_.s, length_);
    } else if (type_ == kWString) {
        length_ = other.length_;
        if (!Share(value_.w)) value_.w = NewText(other.value_.w, length_);
    }
}

Cell::Cell(const Cell& other) : Cell() { CopyFrom(other); }

void Cell::Own()
{
    if (logical_ != kLent) return;
    logical_ = kNotLogical;
    if (type_ == kString && !Share(value_.s)) value_.s = NewText(value_.s, length_);
    if (type_ == kWString && !Share(value_.w)) value_.w = NewText(value_.w, length_);
}

void Cell::Take(Cell& other)
{
    value_ = other.value_;
    length_ = other.length_;
    type_ = other.type_;
    logical_ = other.logical_;
    xf_ = other.xf_;
    other.type_ = kUndefined;
    other.logical_ = kNotLogical;
    other.length_ = 0;
    other.value_.i = 0;
}

void Cell::Relocate(Cell* from, std::size_t count, Cell* to)
{
    for (std::size_t c = 0; c < count; ++c) (new (to + c) Cell())->Take(from[c]);  // `from` left undefined
}

Cell::Cell(Cell&& other) noexcept
{
    Take(other);
    Own();  // the cell may leave the sheet that lent the text
}

Cell& Cell::operator=(const Cell& other)
{
    if (this != &other) {
        if (type_ >= kString) Release();
        CopyFrom(other);
    }
    return *this;
}

Cell& Cell::operator=(Cell&& other) noexcept
{
    if (this != &other) {
        Release();
        Take(other);
        Own();
    }
    return *this;
}

bool Cell::Get(int& value) const
{
    if (type_ == kInteger) {
        value = value_.i;
        return true;
    }
    if (type_ != kDouble || std::isnan(value_.d)) return false;
    const double d = std::trunc(value_.d);
    value = d >= INT_MAX ? INT_MAX : d <= INT_MIN ? INT_MIN : static_cast<int>(d);
    return true;
}

bool Cell::Get(double& value) const
{
    if (type_ == kDouble) value = value_.d;
    else if (type_ == kInteger) value = value_.i;
    else return false;
    return true;
}

bool Cell::Get(char* text) const
{
    if (type_ != kString || !text) return false;
    std::memcpy(text, value_.s, length_ + 1);
    return true;
}

bool Cell::Get(wchar_t* text) const
{
    if (type_ != kWString || !text) return false;
    std::memcpy(text, value_.w, (length_ + 1) * sizeof(wchar_t));
    return true;
}

int Cell::GetInteger() const
{
    int value = 0;
    Get(value);
    return value;
}

const char* Cell::GetString() const { return type_ == kString ? value_.s : ""; }
const wchar_t* Cell::GetWString() const { return type_ == kWString ? value_.w : L""; }

void Cell::SetString(const char* text) { SetString(text, text ? std::strlen(text) : 0); }

void Cell::SetString(const char* text, std::size_t length)
{
    if (length > UINT32_MAX - 1) length = UINT32_MAX - 1;
    char* copy = NewText(text, length);  // before Release: `text` may be this cell's own
    Release();
    type_ = kString;
    value_.s = copy;
    length_ = static_cast<std::uint32_t>(length);
}

void Cell::SetWString(const wchar_t* text) { SetWString(text, text ? std::wcslen(text) : 0); }

void Cell::SetWString(const wchar_t* text, std::size_t length)
{
    if (length > UINT32_MAX - 1) length = UINT32_MAX - 1;
    wchar_t* copy = NewText(text, length);
    Release();
    type_ = kWString;
    value_.w = copy;
    length_ = static_cast<std::uint32_t>(length);
}

void Cell::EraseContents() { Release(); }

void Cell::SetLogical(int value, bool isError)
{
    SetInteger(value);
    logical_ = isError ? kError : kBoolean;
}

void TextHolds::SetString(const char* text, std::size_t length)
{
    if (empty()) text_.SetString(text, length);
}

void TextHolds::SetWString(const wchar_t* text, std::size_t length)
{
    if (empty()) text_.SetWString(text, length);
}

void TextHolds::HandTo(TextHolds* holds, std::size_t count, Sheet& sheet)
{
    std::size_t lent = 0;
    for (std::size_t i = 0; i < count; ++i) lent += holds[i].lent();
    if (lent) {
        const std::size_t total = sheet.lentCount_ + lent;
        auto* texts = static_cast<Cell*>(sheet.arena_.Allocate(total * sizeof(Cell)));
        Cell::Relocate(sheet.lentTexts_, sheet.lentCount_, texts);
        if (sheet.lentTexts_) sheet.arena_.Deallocate(sheet.lentTexts_, sheet.lentCount_ * sizeof(Cell));
        std::size_t at = sheet.lentCount_;
        for (std::size_t i = 0; i < count; ++i)
            if (holds[i].lent()) new (texts + at++) Cell(std::move(holds[i].text_));
        sheet.lentTexts_ = texts;
        sheet.lentCount_ = total;
    }
    for (std::size_t i = 0; i < count; ++i) {
        holds[i].text_.EraseContents();
        holds[i].text_.SetFormat(Cell::kDefaultFormat);
    }
}

}  // namespace xls
