// The synthetic day's accounts and products, shared by the reference tables and the orders.
#pragma once

#include <cmath>
#include <cstddef>

namespace orderview {
namespace generate {

inline constexpr unsigned kTradeDate = 20261123;

struct Account {
    const char* id;
    char tradeType;
    const char* name;
};

// Futures, foreign futures, options and stock accounts; the index is used by Product::account.
// Names are the customers' Chinese names, in UTF-8 (the narrow text of the program's systems).
inline constexpr Account kAccounts[] = {
    {"F000123", '0', "陳大文期貨"},   {"F000456", '0', "林小美期貨"}, {"F000789", '2', "王志明海外期貨"},
    {"O000321", '1', "黃淑芬選擇權"}, {"S987654", 'A', "張家豪證券"},
};

struct Product {
    const char* symbol;
    const char* comId;
    const char* month;
    const char* month2;  // second leg of a calendar spread
    const char* exchange;
    char marketKind;
    char marketType;
    char stockTradeKind;
    int service;
    int account;         // index into kAccounts
    double tick;         // decimal tick, or 1 for fractional prices
    long lowTicks;       // price range in ticks
    long highTicks;
    int denominator;     // 32 or 64 for fractional prices, else 0
    int decimals;
    double multiplier;   // money per price point and quantity unit
    int maxQty;
};

inline constexpr Product kProducts[] = {
    {"TXFL6", "TXF", "202612", "", "TAIFEX", '0', 'F', 0, 1, 0, 1, 22800, 23200, 0, 0, 200, 10},
    {"MXFL6", "MXF", "202612", "", "TAIFEX", '0', 'F', 0, 1, 1, 1, 22800, 23200, 0, 0, 50, 20},
    {"TXFL6/A7", "TXF", "202612", "202701", "TAIFEX", '0', 'F', 0, 1, 0, 1, 20, 80, 0, 0, 200, 5},
    {"TXO23000L6", "TXO", "202612", "", "TAIFEX", '1', 'O', 0, 1, 3, 1, 50, 499, 0, 0, 50, 20},
    {"TXO23000X6", "TXO", "202612", "", "TAIFEX", '1', 'O', 0, 1, 3, 1, 50, 499, 0, 0, 50, 20},
    {"2330", "2330", "", "", "TWSE", 'A', 'S', 'A', 16, 4, 1, 900, 999, 0, 0, 1000, 10},
    {"2317", "2317", "", "", "TWSE", 'A', 'S', 'B', 16, 4, 0.5, 300, 398, 0, 1, 1000, 10},
    {"0050", "0050", "", "", "TWSE", 'A', 'S', 'C', 16, 4, 0.05, 3600, 3800, 0, 2, 1000, 10},
    {"2603", "2603", "", "", "TWSE", 'D', 'S', 0, 16, 4, 0.5, 360, 400, 0, 1, 1000, 5},
    {"2498", "2498", "", "", "TWSE", 'E', 'S', 0, 16, 4, 0.05, 800, 900, 0, 2, 1, 999},
    {"ZBZ6", "ZB", "202612", "", "CBT", '2', 'O', 0, 6, 2, 1, 117 * 32, 119 * 32, 32, 0, 1000, 5},
    {"ZNZ6", "ZN", "202612", "", "CBT", '2', 'O', 0, 6, 2, 1, 110 * 64, 112 * 64, 64, 0, 1000, 5},
};

inline constexpr std::size_t kProductCount = sizeof(kProducts) / sizeof(kProducts[0]);

inline bool IsSpread(const Product& p) { return p.month2[0] != 0; }
inline bool IsStock(const Product& p) { return p.marketKind == 'A' || p.marketKind == 'D' || p.marketKind == 'E'; }

// A price in ticks as the order fields hold it: decimal, or whole points and a numerator.
struct Price {
    double whole = 0;
    double frac = 0;
    double value = 0;  // the decimal value
};

inline Price PriceOf(const Product& p, long ticks)
{
    Price price;
    if (p.denominator) {
        price.whole = static_cast<double>(ticks / p.denominator);
        price.frac = static_cast<double>(ticks % p.denominator);
        price.value = price.whole + price.frac / p.denominator;
    } else {
        // Rounded to the product's decimals so that the written text lies exactly on the tick.
        const double scale = std::pow(10.0, p.decimals);
        price.whole = std::round(ticks * p.tick * scale) / scale;
        price.value = price.whole;
    }
    return price;
}

}  // namespace generate
}  // namespace orderview
