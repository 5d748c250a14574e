#include "xls/cell.h"

#include <climits>
#include <cmath>
#include <cstring>
#include <cwchar>

namespace xls {

Cell::~Cell() { Release(); }

void Cell::Release()
{
    if (type_ == kString) delete[] value_.s;
    if (type_ == kWString) delete[] value_.w;
    type_ = kUndefined;
    logical_ = kNotLogical;
    length_ = 0;
    value_.i = 0;
}

void Cell::CopyFrom(const Cell& other)
{
    xf_ = other.xf_;
    if (other.type_ == kString)
        SetString(other.value_.s, other.length_);
    else if (other.type_ == kWString)
        SetWString(other.value_.w, other.length_);
    else {
        type_ = other.type_;
        value_ = other.value_;
        length_ = 0;
        logical_ = other.logical_;
    }
}

Cell::Cell(const Cell& other) : Cell() { CopyFrom(other); }

Cell::Cell(Cell&& other) noexcept
    : value_(other.value_), length_(other.length_), type_(other.type_), logical_(other.logical_), xf_(other.xf_)
{
    other.type_ = kUndefined;
    other.logical_ = kNotLogical;
    other.length_ = 0;
    other.value_.i = 0;
}

Cell& Cell::operator=(const Cell& other)
{
    if (this != &other) {
        Release();
        CopyFrom(other);
    }
    return *this;
}

Cell& Cell::operator=(Cell&& other) noexcept
{
    if (this != &other) {
        Release();
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

double Cell::GetDouble() const
{
    double value = 0;
    Get(value);
    return value;
}

const char* Cell::GetString() const { return type_ == kString ? value_.s : ""; }
const wchar_t* Cell::GetWString() const { return type_ == kWString ? value_.w : L""; }

void Cell::SetString(const char* text) { SetString(text, text ? std::strlen(text) : 0); }

void Cell::SetString(const char* text, std::size_t length)
{
    if (length > UINT32_MAX - 1) length = UINT32_MAX - 1;
    char* copy = new char[length + 1];
    if (length) std::memcpy(copy, text, length);
    copy[length] = '\0';
    Release();
    type_ = kString;
    value_.s = copy;
    length_ = static_cast<std::uint32_t>(length);
}

void Cell::SetWString(const wchar_t* text) { SetWString(text, text ? std::wcslen(text) : 0); }

void Cell::SetWString(const wchar_t* text, std::size_t length)
{
    if (length > UINT32_MAX - 1) length = UINT32_MAX - 1;
    wchar_t* copy = new wchar_t[length + 1];
    if (length) std::memcpy(copy, text, length * sizeof(wchar_t));
    copy[length] = L'\0';
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

}  // namespace xls
