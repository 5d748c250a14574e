// One cell of a sheet: undefined, an integer, a double, a narrow string or a wide string.
//
// Narrow strings are 8-bit code units as a workbook stores them (no encoding conversion);
// wide strings are wchar_t text. A cell takes 16 bytes; its text lives on the heap.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

#include "order_data/export.h"

namespace xls {

class ORDERVIEW_API Cell {
public:
    enum Kind { kUndefined = 0, kInteger = 1, kDouble = 2, kString = 3, kWString = 4 };

    Cell() { value_.i = 0; }
    ~Cell();
    Cell(const Cell& other);
    Cell(Cell&& other) noexcept;
    Cell& operator=(const Cell& other);
    Cell& operator=(Cell&& other) noexcept;

    int Type() const { return type_; }
    // Integers, and doubles cut toward zero (saturating; NaN fails).
    bool Get(int& value) const;
    // Doubles, and integers widened.
    bool Get(double& value) const;
    // The text of a narrow (wide) string cell copied with its terminator; the buffer must hold
    // GetStringLength() + 1 characters.
    bool Get(char* text) const;
    bool Get(wchar_t* text) const;
    std::size_t GetStringLength() const { return (type_ == kString || type_ == kWString) ? length_ : 0; }
    int GetInteger() const;
    double GetDouble() const;
    const char* GetString() const;      // "" unless a narrow string
    const wchar_t* GetWString() const;  // L"" unless a wide string

    void Set(int value) { SetInteger(value); }
    void Set(double value) { SetDouble(value); }
    void Set(const char* text) { SetString(text); }
    void Set(const wchar_t* text) { SetWString(text); }
    void SetInteger(int value)
    {
        if (type_ >= kString) Release();
        type_ = kInteger;
        value_.i = value;
    }
    void SetDouble(double value)
    {
        if (type_ >= kString) Release();
        type_ = kDouble;
        value_.d = value;
    }
    void SetString(const char* text);
    void SetString(const char* text, std::size_t length);
    void SetWString(const wchar_t* text);
    void SetWString(const wchar_t* text, std::size_t length);
    void EraseContents();

private:
    void Release();
    void CopyFrom(const Cell& other);

    union {
        std::int32_t i;
        double d;
        char* s;
        wchar_t* w;
    } value_;
    std::uint32_t length_ = 0;
    std::uint8_t type_ = kUndefined;
};

}  // namespace xls
