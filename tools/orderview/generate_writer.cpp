#include "generate_writer.h"

#include <algorithm>
#include <cctype>
#include <cmath>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <random>
#include <vector>

#include "generate_products.h"
#include "generate_reference.h"

namespace orderview {
namespace generate {

namespace {

// Deterministic across standard libraries: only the engine's raw output is used.
class Random {
public:
    explicit Random(std::uint64_t seed) : engine_(seed) {}
    std::uint64_t Below(std::uint64_t n) { return n ? engine_() % n : 0; }
    long Between(long low, long high) { return low + static_cast<long>(Below(static_cast<std::uint64_t>(high - low + 1))); }
    bool Chance(int percent) { return Below(100) < static_cast<std::uint64_t>(percent); }

private:
    std::mt19937_64 engine_;
};

std::string Format(const char* format, double value)
{
    char buffer[64];
    std::snprintf(buffer, sizeof buffer, format, value);
    return buffer;
}

std::string Number(double value, int decimals)
{
    char buffer[64];
    std::snprintf(buffer, sizeof buffer, "%.*f", decimals, value);
    return buffer;
}

std::string Code(char c) { return c ? std::string(1, c) : std::string(); }

// Milliseconds since midnight as hhmmssmmm.
unsigned Stamp(long ms)
{
    const long h = ms / 3600000, m = ms / 60000 % 60, s = ms / 1000 % 60;
    return static_cast<unsigned>(((h * 100 + m) * 100 + s) * 1000 + ms % 1000);
}

const char* const kOrderColumns =
    "csAccount,dwTradeType,dwOrderDate,dwOrderTime,dwBookDate,dwBookTime,dwAccountDate,dwDealTime,"
    "dwOrderSource,csOrderNo,iOrderSeq,dwHoursType,dwBS,dwLegBS,dwOpenOffset,dwDayTrade,dwOrderKind,"
    "dwOrderType,dwComplexKind,dwOrderCond,dbOrderPrice,dbOrderPriceFrac,dbDenominator,dbTriggerPrice,"
    "dbTriggerPriceFrac,dbTriggerDenominator,dwOrderQty,dwDealQty,dwCancelQty,dbAvgPrice,dbAvgPrice2,"
    "iDecimals,csStatusCode,csStatusMsg,csStateCode,csOperator,csSourceName,csFirm,csExchangeId,"
    "dwMarketKind,dwStockTradeKind,csComId,csSymbolID,byServiceID,dwMarketType,csComMonth,csComId2,"
    "csComMonth2";

const char* const kDealColumns =
    ",dwDealDate,dwDealMarketKind,csDealNo,dbDealPrice,dbDealPriceFrac,dbDealDenominator,dbDealPrice2,"
    "dbTax,dbFee,dbNetAmount,dbTradeValue";

struct Deal {
    long ticks;
    long ticks2;
    unsigned qty;
    long timeMs;
};

// One trading day: each order's row and its deals' rows, written as they are made.
class DayWriter {
public:
    DayWriter(std::ofstream& orders, std::ofstream& deals, std::uint64_t count, std::uint64_t seed)
        : orders_(orders), deals_(deals), count_(count), random_(seed)
    {
        orders_ << "list," << kOrderColumns << '\n';
        deals_ << (kOrderColumns) << kDealColumns << '\n';
    }

    void Write(std::uint64_t index)
    {
        // Orders keep their rows in time order over the day session 08:45 to 13:45.
        const long open = (8 * 60 + 45) * 60000L, span = 5 * 3600000L;
        const long timeMs = open + static_cast<long>(static_cast<double>(index) * span / count_) +
                            static_cast<long>(random_.Below(1000));
        // The first orders cover every product in turn, so that small days hold each of them.
        const Product& p = index < kProductCount ? kProducts[index] : kProducts[random_.Below(kProductCount)];
        WriteOrder(p, index, timeMs);
    }

private:
    void WriteOrder(const Product& p, std::uint64_t index, long timeMs)
    {
        const Account& account = kAccounts[p.account];
        const bool spread = IsSpread(p);
        const bool stock = IsStock(p);
        const bool ets = p.marketKind == '2' && random_.Chance(30);
        // Order numbers: a letter and the index; an ETS order carries 'A' to 'J' second.
        char number[32];
        std::snprintf(number, sizeof number, "%c%c%04llu", ets ? 'E' : 'K',
                      ets ? static_cast<char>('A' + index % 10) : static_cast<char>('0' + index % 10),
                      static_cast<unsigned long long>(index / 10));

        const char bs = random_.Chance(50) ? 'B' : 'S';
        const char legBs = spread ? (random_.Chance(50) ? 'B' : 'S') : bs;
        char kind = '2';
        const int kindRoll = static_cast<int>(random_.Below(100));
        if (kindRoll < 15 && !spread) kind = '1';
        else if (kindRoll < 22 && !stock && !spread) kind = '3';
        else if (kindRoll < 29 && !stock && !spread) kind = '4';
        char cond = 'R';
        const int condRoll = static_cast<int>(random_.Below(100));
        if (kind == '2' && condRoll < 8) cond = 'F';
        else if (kind != '3' && kind != '4' && condRoll < 16) cond = 'I';

        const unsigned qty = static_cast<unsigned>(random_.Between(1, p.maxQty));
        const long priceTicks = random_.Between(p.lowTicks, p.highTicks);
        const long triggerTicks = (kind == '3' || kind == '4')
            ? std::min(p.highTicks, std::max(p.lowTicks, priceTicks + (bs == 'B' ? -2 : 2))) : 0;

        // The outcome: dealt, cancelled and state.
        unsigned dealt = 0, cancelled = 0;
        std::string state, status = "0000", message;
        const int roll = static_cast<int>(random_.Below(100));
        if (cond == 'F' || cond == 'I') {
            status = "9997";
            dealt = cond == 'F' ? (roll < 50 ? qty : 0) : static_cast<unsigned>(random_.Below(qty + 1));
            cancelled = qty - dealt;
            state = dealt == qty ? "F" : "C";
        } else if (roll < 25) {
            state = "";  // working, perhaps partly dealt
            dealt = static_cast<unsigned>(random_.Below(qty));
            if (roll < 4) status = "9995";
        } else if (roll < 55) {
            state = "F";
            dealt = qty;
        } else if (roll < 70) {
            state = "C";
            dealt = static_cast<unsigned>(random_.Below(qty));
            cancelled = qty - dealt;
        } else if (roll < 80) {
            state = "U";  // quantity reduced, the rest works
            cancelled = qty > 1 ? static_cast<unsigned>(random_.Between(1, qty - 1)) : 0;
            dealt = qty - cancelled > 1 ? static_cast<unsigned>(random_.Below(qty - cancelled)) : 0;
        } else if (roll < 92) {
            state = "P";  // price changed, partly dealt
            dealt = static_cast<unsigned>(random_.Below(qty));
        } else {
            state = "R";  // refused by the exchange
            status = roll < 96 ? "E008" : "E002";
            message = roll < 96 ? "Price error" : "No such item";
        }

        // Deals in up to three fills, at the limit price or better for limit orders.
        std::vector<Deal>& deals = dealBuffer_;
        deals.clear();
        unsigned left = dealt;
        long dealTime = timeMs;
        while (left) {
            const unsigned part = deals.size() == 2 ? left : static_cast<unsigned>(random_.Between(1, left));
            long ticks = priceTicks;
            if (kind == '1' || kind == '3') ticks = random_.Between(p.lowTicks, p.highTicks);
            else if (random_.Chance(40)) ticks = std::min(p.highTicks, std::max(p.lowTicks, priceTicks + (bs == 'B' ? -1 : 1)));
            dealTime += static_cast<long>(random_.Between(5, 60000));
            // A spread's second price is its far leg's, a futures price of the same commodity.
            const Product& leg = kProducts[0];
            deals.push_back({ticks, spread ? random_.Between(leg.lowTicks, leg.highTicks) : 0, part, dealTime});
            left -= part;
        }
        double sum = 0, sum2 = 0;
        for (const Deal& d : deals) {
            sum += PriceOf(p, d.ticks).value * d.qty;
            sum2 += d.ticks2 * d.qty;
        }
        const double avg = dealt ? sum / dealt : 0, avg2 = dealt && spread ? sum2 / dealt : 0;

        const Price price = kind == '1' || kind == '3' ? Price{} : PriceOf(p, priceTicks);
        const Price trigger = triggerTicks ? PriceOf(p, triggerTicks) : Price{};
        const int seq = static_cast<int>(index % 7) + 1;
        const std::string bookTime = std::to_string(Stamp(timeMs + 35));
        const std::string lastDeal = deals.empty() ? "0" : std::to_string(Stamp(deals.back().timeMs));

        std::string common;
        common.reserve(512);
        const auto add = [&common](const std::string& text) { common += text; common += ','; };
        add(account.id);
        add(Code(account.tradeType));
        add(std::to_string(kTradeDate));
        add(std::to_string(Stamp(timeMs)));
        add(std::to_string(kTradeDate));
        add(bookTime);
        add(std::to_string(kTradeDate));
        orderHead1_ = common;  // up to dwDealTime, which the order and each deal fill in
        common.clear();
        add(random_.Chance(80) ? "W" : "A");
        add(number);
        add(std::to_string(seq));
        add(random_.Chance(90) ? "R" : "P");
        add(Code(bs));
        add(Code(legBs));
        add(random_.Chance(60) ? "Y" : (random_.Chance(80) ? "N" : "D"));
        add(random_.Chance(10) ? "Y" : "N");
        orderHead2_ = common;  // from dwOrderSource up to the kind
        common.clear();
        add(Code(kind == '1' || kind == '3' ? '1' : '2'));
        add(Code(spread ? '2' : 'N'));
        add(Code(cond));
        add(p.denominator ? Number(price.whole, 0) : Number(price.whole, p.decimals));
        add(p.denominator ? Number(price.frac, 0) : "0");
        add(std::to_string(p.denominator));
        add(p.denominator ? Number(trigger.whole, 0) : Number(trigger.whole, p.decimals));
        add(p.denominator ? Number(trigger.frac, 0) : "0");
        add(std::to_string(p.denominator));
        const std::string priceFields = common;
        common.clear();
        add(Format("%.10g", avg));
        add(Format("%.10g", avg2));
        add(std::to_string(p.decimals));
        add(status);
        add(message);
        add(state);
        add(random_.Chance(70) ? "" : "OP01");
        add(random_.Chance(80) ? "Web" : "App");
        add("F001");
        add(p.exchange);
        add(Code(p.marketKind));
        add(Code(p.stockTradeKind));
        add(p.comId);
        add(p.symbol);
        add(std::to_string(p.service));
        add(Code(p.marketType));
        add(p.month);
        add(spread ? p.comId : "");
        common += p.month2;
        const std::string tail = common;

        orders_ << "today," << orderHead1_ << lastDeal << ',' << orderHead2_ << Code(kind) << ',' << priceFields << qty << ',' << dealt << ','
                << cancelled << ',' << tail << '\n';
        // Some cancelled or changed orders also list the request they got, as a record of its own.
        if ((state == "C" || state == "U") && index % 10 < 3 && cancelled) {
            orders_ << "today," << orderHead1_ << "0," << orderHead2_ << (state == "C" ? 'C' : 'U') << ',' << priceFields << cancelled
                    << ",0,0," << tail << '\n';
        }

        // A deal row repeats its order's fields; dwDealQty is the fill's own quantity.
        for (std::size_t k = 0; k < deals.size(); ++k) {
            const Deal& d = deals[k];
            const Price dp = PriceOf(p, d.ticks);
            const double value = dp.value * d.qty * p.multiplier;
            const double fee = stock ? std::max(20.0, std::round(value * 0.001425)) : 50.0 * d.qty;
            const double tax = stock ? (bs == 'S' ? std::round(value * 0.003) : 0) : std::round(value * 0.00002);
            const double net = bs == 'B' ? -(value + fee + tax) : value - fee - tax;
            deals_ << orderHead1_ << Stamp(d.timeMs) << ',' << orderHead2_ << Code(kind) << ',' << priceFields << qty << ',' << d.qty << ',' << cancelled
                   << ',' << tail << ',' << kTradeDate << ',' << Code(p.marketKind) << ",D" << number << '-' << k + 1
                   << ',' << (p.denominator ? Number(dp.whole, 0) : Number(dp.whole, p.decimals)) << ','
                   << (p.denominator ? Number(dp.frac, 0) : "0") << ',' << p.denominator << ','
                   << (spread ? std::to_string(d.ticks2) : "0") << ',' << Number(tax, 0) << ',' << Number(fee, 0)
                   << ',' << Number(net, 2) << ',' << Number(value, 2) << '\n';
        }
    }

    std::ofstream& orders_;
    std::ofstream& deals_;
    std::uint64_t count_;
    Random random_;
    std::vector<Deal> dealBuffer_;
    std::string orderHead1_;
    std::string orderHead2_;
};

bool WriteText(const std::filesystem::path& path, const std::string& text, std::string& error)
{
    std::ofstream out(path, std::ios::binary);
    out << text;
    out.close();
    if (!out) error = "cannot write " + path.string();
    return static_cast<bool>(out);
}

// The files of one run, each written under "NAME.tmp" and six letters or digits (the names the
// library gives its temporary files) and renamed over NAME once every file is complete; until
// then the folder keeps its old files, and whatever stops the run removes the new ones.
class TemporaryFiles {
public:
    explicit TemporaryFiles(std::filesystem::path folder) : folder_(std::move(folder)) {}
    ~TemporaryFiles()
    {
        std::error_code ignored;
        for (const auto& file : files_) std::filesystem::remove(file.second, ignored);
    }
    // The temporary path for `name`, after removing those an earlier run left.
    std::filesystem::path Add(const std::string& name)
    {
        static const char kAlnum[] = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789";
        std::error_code error;
        for (std::filesystem::directory_iterator it(folder_, error), end; !error && it != end; it.increment(error)) {
            const std::string other = it->path().filename().string();
            if (other.size() == name.size() + 10 && other.compare(0, name.size() + 4, name + ".tmp") == 0 &&
                std::all_of(other.begin() + static_cast<long>(name.size()) + 4, other.end(),
                            [](char c) { return std::isalnum(static_cast<unsigned char>(c)) != 0; })) {
                std::error_code ignored;
                std::filesystem::remove(it->path(), ignored);
            }
        }
        std::filesystem::path path;
        do {
            std::string suffix;
            for (int i = 0; i < 6; ++i) suffix += kAlnum[random_() % 62];
            path = folder_ / (name + ".tmp" + suffix);
        } while (std::filesystem::exists(path, error));
        files_.emplace_back(name, path);
        return path;
    }
    // Renames every file over its name; false with `error` naming the first that failed.
    bool Commit(std::string& error)
    {
        for (const auto& file : files_) {
            std::error_code ec;
            std::filesystem::rename(file.second, folder_ / file.first, ec);
            if (ec) {
                error = "cannot write " + (folder_ / file.first).string() + ": " + ec.message();
                return false;
            }
        }
        files_.clear();
        return true;
    }

private:
    std::filesystem::path folder_;
    std::vector<std::pair<std::string, std::filesystem::path>> files_;
    std::random_device random_;
};

}  // namespace

bool WriteMainFolder(const std::string& folder, std::uint64_t orders, std::uint64_t seed, std::string& error,
                     const std::function<bool(std::uint64_t)>& onOrder)
{
    const std::filesystem::path sys = std::filesystem::path(folder) / "sys";
    std::error_code ec;
    std::filesystem::create_directories(sys, ec);
    if (ec || !std::filesystem::is_directory(sys)) {
        error = "cannot create " + sys.string() + (ec ? ": " + ec.message() : std::string());
        return false;
    }
    TemporaryFiles files(sys);
    for (const ReferenceFile& file : ReferenceFiles()) {
        if (!WriteText(files.Add(file.name), file.text, error)) return false;
    }

    const std::filesystem::path orderPath = files.Add("orders.csv"), dealPath = files.Add("deals.csv");
    std::ofstream orderFile(orderPath, std::ios::binary);
    std::ofstream dealFile(dealPath, std::ios::binary);
    if (!orderFile || !dealFile) {
        error = "cannot write " + (sys / (orderFile ? "deals.csv" : "orders.csv")).string();
        return false;
    }
    DayWriter day(orderFile, dealFile, orders, seed);
    for (std::uint64_t i = 0; i < orders && orderFile && dealFile; ++i) {
        if (onOrder && !onOrder(i)) {
            error = "interrupted";
            return false;
        }
        day.Write(i);
    }
    orderFile.close();
    dealFile.close();
    if (!orderFile || !dealFile) {
        error = "cannot write " + (sys / (orderFile ? "deals.csv" : "orders.csv")).string();
        return false;
    }
    return files.Commit(error);
}

}  // namespace generate
}  // namespace orderview
