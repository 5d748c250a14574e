// Drives the smart-order registries with long random sequences of operations and compares every
// observable result with a plain reference model of the same rules.
#include <gtest/gtest.h>

#include <algorithm>
#include <deque>
#include <map>
#include <random>

#include "smart_orders/market_flags.h"
#include "smart_orders/move_smt_registry.h"
#include "smart_orders/oco_registry.h"
#include "smart_orders/registries.h"
#include "smart_orders/smt_registry.h"

namespace {

using Strings = std::vector<CString>;

class Random {
public:
    explicit Random(unsigned seed) : engine_(seed) {}
    int Below(int n) { return std::uniform_int_distribution<int>(0, n - 1)(engine_); }
    bool Coin() { return Below(2) == 1; }
    CString Pick(const char* prefix, int n)
    {
        const int i = Below(n + 1);
        if (i == n) return CString();  // empty keys too
        CString s;
        s.Format("%s%d", prefix, i);
        return s;
    }
    unsigned char Sync() { return static_cast<unsigned char>(Below(4)); }

private:
    std::mt19937 engine_;
};

template <class T>
bool Contains(const std::vector<T>& list, const T& value)
{
    return std::find(list.begin(), list.end(), value) != list.end();
}

// Removes the first element `match` accepts, if any.
template <class T, class Match>
void EraseFirst(std::vector<T>& list, Match match)
{
    const auto it = std::find_if(list.begin(), list.end(), match);
    if (it != list.end()) list.erase(it);
}

bool SameLegs(const std::vector<STRUCT_FLASH_OCO_DATA>& a, const std::vector<STRUCT_FLASH_OCO_DATA>& b)
{
    if (a.size() != b.size()) return false;
    for (size_t i = 0; i < a.size(); ++i)
        if (a[i].strSymbol != b[i].strSymbol || a[i].strPrice != b[i].strPrice || a[i].strMark != b[i].strMark ||
            a[i].byFlag != b[i].byFlag || a[i].dwValue != b[i].dwValue)
            return false;
    return true;
}

// The OCO rules, written plainly.
struct OcoModel {
    std::map<unsigned char, Strings> sync;
    std::map<CString, std::vector<STRUCT_FLASH_OCO_DATA>> legs;
    std::map<CString, CString> links;
    std::map<CString, std::deque<CString>> reuse;

    void Del(const CString& sn, unsigned char st, Strings& removed, const CString& mark, bool all)
    {
        if (!sync.count(st)) return;
        Strings& list = sync[st];
        if (all) {
            for (const CString& s : Strings(list))
                if (legs.count(s) && !legs[s].empty() && legs[s][0].strMark == mark) {
                    legs.erase(s);
                    removed.push_back(s);
                }
        } else {
            EraseFirst(list, [&](const CString& s) { return s == sn; });
            legs.erase(sn);
        }
        if (legs.empty()) {
            removed.clear();
            sync.erase(st);
            return;
        }
        Strings rebuilt;
        if (all) {
            for (const CString& s : list)
                if (!Contains(removed, s)) rebuilt.push_back(s);
        } else {
            for (const CString& r : removed)
                if (r != sn) rebuilt.push_back(sn);
        }
        list = rebuilt;
    }
};

TEST(SmartOrderModel, OcoRegistryMatchesTheModel)
{
    orderview::ResetSmartOrderRegistries();
    OcoModel model;
    Random rnd(20261121);
    for (int step = 0; step < 20000; ++step) {
        unsigned char st = rnd.Sync();
        CString sn = rnd.Pick("S", 8);
        const CString mark = rnd.Pick("m", 2);
        switch (rnd.Below(7)) {
        case 0: {
            std::vector<STRUCT_FLASH_OCO_DATA> legs(static_cast<size_t>(rnd.Below(3)));
            for (auto& leg : legs) {
                leg.strSymbol = rnd.Pick("T", 2);
                leg.strPrice = rnd.Pick("p", 3);
                leg.strMark = rnd.Pick("m", 2);
                leg.byFlag = static_cast<std::uint8_t>(rnd.Below(2));
            }
            if (!model.legs.count(sn)) model.sync[st].push_back(sn);
            model.legs[sn] = legs;
            g_vSetOCOInfoBySN(sn, legs, st);
            break;
        }
        case 1: {
            const bool del = rnd.Coin(), clear = rnd.Below(5) == 0;
            if (clear) model.sync.erase(st);
            else if (!del) model.sync[st].push_back(sn);
            else if (model.sync.count(st))
                EraseFirst(model.sync[st], [&](const CString& s) { return s == sn; });
            g_vSetOCOOrder(sn, st, del, clear);
            break;
        }
        case 2: {
            const bool all = rnd.Coin();
            Strings seed;
            for (int i = rnd.Below(3); i > 0; --i) seed.push_back(rnd.Pick("S", 8));
            Strings expected = seed, actual = seed;
            model.Del(sn, st, expected, mark, all);
            g_vDelOCOInfoBySN(sn, st, actual, mark, all);
            ASSERT_EQ(actual, expected) << "step " << step;
            break;
        }
        case 3: {
            CString price = rnd.Pick("p", 3), found = "-", expectedSn = "-";
            const CString symbol = rnd.Pick("T", 2);
            bool flag = false, expectedFlag = false;
            const auto matches = [&](const STRUCT_FLASH_OCO_DATA& l) {
                return l.strPrice == price && l.strSymbol == symbol && (mark.IsEmpty() || l.strMark == mark);
            };
            for (const auto& e : model.legs) {
                const auto leg = std::find_if(e.second.begin(), e.second.end(), matches);
                if (leg == e.second.end()) continue;
                expectedSn = e.first;
                expectedFlag = leg->byFlag != 0;
                break;
            }
            g_vGetOCOSNbyPrice(price, symbol, found, flag, mark);
            ASSERT_EQ(found, expectedSn) << "step " << step;
            ASSERT_EQ(flag, expectedFlag) << "step " << step;
            break;
        }
        case 4: {
            CString order = rnd.Pick("O", 5);
            const CString second = rnd.Coin() ? rnd.Pick("O", 5) : rnd.Pick("S", 8);
            const bool del = rnd.Coin();
            if (model.links.count(order)) {
                const CString linked = model.links[order];
                if (!del) {
                    model.links[second] = linked;
                    model.links.erase(order);
                } else {
                    Strings none;
                    model.Del(linked, st, none, "", false);
                    model.links.erase(order);
                }
            } else if (!del) {
                model.links[order] = second;
            }
            g_vSetOCOSNtoOrderSN(order, second, st, del);
            break;
        }
        case 5: {
            CString key = rnd.Pick("K", 2);
            const bool pop = rnd.Coin(), clear = rnd.Below(4) == 0;
            if (pop) {
                if (model.reuse.count(key)) {
                    model.reuse[key].pop_front();
                    if (model.reuse[key].empty()) model.reuse.erase(key);
                }
                if (clear) model.reuse.erase(key);
            } else if (!clear) {
                model.reuse[key].push_back(sn);
            } else {
                model.reuse.erase(key);
            }
            g_vSetReuseOCOSN(key, sn, pop, clear);
            break;
        }
        default:
            break;  // observe only
        }
        // Compare every observable.
        for (unsigned char s = 0; s < 4; ++s) {
            const Strings expected = model.sync.count(s) ? model.sync[s] : Strings();
            ASSERT_EQ(g_vecGetOCOSNBySync(s), expected) << "step " << step;
            int size = 0;
            for (const CString& x : expected) size += model.legs.count(x) ? 1 : 0;
            ASSERT_EQ(g_iGetOCOInfoSize(s), size);
            ASSERT_EQ(g_bGetHaveOCOOrder(s), !expected.empty());
        }
        for (int i = 0; i <= 8; ++i) {
            CString s = i < 8 ? CString("S") + CString(static_cast<char>('0' + i)) : CString();
            const auto expected = model.legs.count(s) ? model.legs[s] : std::vector<STRUCT_FLASH_OCO_DATA>();
            ASSERT_TRUE(SameLegs(g_vecGetOCOInfoBySN(s), expected)) << "step " << step;
            Strings orders;
            for (const auto& l : model.links)
                if (l.second == s) orders.push_back(l.first);
            ASSERT_EQ(g_cszGetOrderSNbyOCOSN(s), orders) << "step " << step;
        }
        for (int i = 0; i <= 5; ++i) {
            CString o = i < 5 ? CString("O") + CString(static_cast<char>('0' + i)) : CString();
            ASSERT_EQ(g_cszGetOCOSNbyOrderSN(o), model.links.count(o) ? model.links[o] : CString());
        }
        for (const char* k : {"K0", "K1", ""}) {
            CString key = k, front = "-";
            const int n = g_iGetReuseOCOSN(key, front);
            const auto it = model.reuse.find(key);
            ASSERT_EQ(n, it == model.reuse.end() ? 0 : static_cast<int>(it->second.size()));
            ASSERT_EQ(front, it == model.reuse.end() ? CString("-") : it->second.front());
        }
    }
    orderview::ResetSmartOrderRegistries();
}

struct SmtEntry {
    CString key1, key2;
    Strings prices;
};

TEST(SmartOrderModel, SmtRegistryMatchesTheModel)
{
    orderview::ResetSmartOrderRegistries();
    std::map<unsigned char, std::vector<SmtEntry>> model;
    std::map<CString, std::uint8_t> seenDeals, seenOrders;
    Random rnd(77);
    auto testAndSet = [](std::map<CString, std::uint8_t>& seen, const CString& k, std::uint8_t v, bool reset) {
        if (reset) seen.clear();
        if (k.IsEmpty()) return false;
        if (seen.count(k)) return seen[k] == v;
        seen[k] = v;
        return false;
    };
    for (int step = 0; step < 20000; ++step) {
        unsigned char st = rnd.Sync();
        CString key;
        switch (rnd.Below(4)) {
        case 0: key = ""; break;
        case 1: key = rnd.Pick("a", 2) + "_" + rnd.Pick("b", 2); break;
        case 2: key = rnd.Pick("a", 2) + "_x_" + rnd.Pick("b", 2); break;
        default: key = rnd.Pick("b", 2); break;
        }
        const CString price = rnd.Pick("p", 3);
        const int op = rnd.Below(4);
        if (op == 0) {
            const bool del = rnd.Coin(), removeKey = rnd.Below(4) == 0;
            auto it = model.find(st);
            if (removeKey) {
                if (it != model.end()) {
                    if (key.IsEmpty()) model.erase(it);
                    else {
                        auto& l = it->second;
                        l.erase(std::remove_if(l.begin(), l.end(), [&](const SmtEntry& e) { return e.key2 == key; }),
                                l.end());
                    }
                }
            } else if (del) {
                if (it != model.end()) {
                    auto& l = it->second;
                    if (!key.IsEmpty()) {
                        EraseFirst(l, [&](const SmtEntry& e) { return e.key1 + "_" + e.key2 == key; });
                    } else if (!price.IsEmpty()) {
                        seenOrders.erase(price);
                        for (auto& e : l) e.prices.erase(std::remove(e.prices.begin(), e.prices.end(), price), e.prices.end());
                    }
                }
            } else {
                bool appended = false;
                if (it != model.end())
                    for (auto& e : it->second)
                        if (e.key1 + "_" + e.key2 == key) {
                            e.prices.push_back(price);
                            appended = true;
                            break;
                        }
                if (!appended) {
                    const int first = key.Find('_'), last = key.ReverseFind('_');
                    model[st].push_back({first >= 0 ? key.Left(first) : CString(),
                                         last >= 0 ? key.Mid(last + 1) : key, Strings{price}});
                }
            }
            g_vSetSMTPriceBySyncType(st, key, price, del, removeKey);
        } else if (op == 1) {
            const auto value = static_cast<std::uint8_t>(rnd.Below(2));
            const bool reset = rnd.Below(50) == 0;
            ASSERT_EQ(g_bGetSMTDealInfo(price, value, reset), testAndSet(seenDeals, price, value, reset));
        } else if (op == 2) {
            const auto value = static_cast<std::uint8_t>(rnd.Below(2));
            const bool reset = rnd.Below(50) == 0;
            ASSERT_EQ(g_bGetSMTOrderInfo(price, value, reset), testAndSet(seenOrders, price, value, reset));
        }
        for (unsigned char s = 0; s < 4; ++s) {
            const auto actual = g_vecGetSMTDataBySyncType(s);
            const auto it = model.find(s);
            const std::vector<SmtEntry> expected = it == model.end() ? std::vector<SmtEntry>() : it->second;
            ASSERT_EQ(actual.size(), expected.size()) << "step " << step;
            for (size_t i = 0; i < actual.size(); ++i) {
                ASSERT_EQ(actual[i].strKey1, expected[i].key1);
                ASSERT_EQ(actual[i].strKey2, expected[i].key2);
                ASSERT_EQ(actual[i].vecPrice, expected[i].prices) << "step " << step;
            }
            ASSERT_EQ(g_bGetHaveSMTOrder(s), !expected.empty());
        }
    }
    orderview::ResetSmartOrderRegistries();
}

TEST(SmartOrderModel, MoveSmtAndMarketRegistriesMatchTheModel)
{
    orderview::ResetSmartOrderRegistries();
    struct Entry {
        CString deal, price, mark;
        int id;
    };
    std::map<unsigned char, std::vector<Entry>> move;
    std::map<unsigned char, Strings> symbols;
    Random rnd(4242);
    for (int step = 0; step < 20000; ++step) {
        unsigned char st = rnd.Sync();
        CString deal = rnd.Pick("D", 4), price = rnd.Pick("p", 3), mark = rnd.Pick("m", 2);
        const bool all = rnd.Below(10) == 0;
        switch (rnd.Below(5)) {
        case 0: {
            STRUCT_FLASH_MOVESMT_DATA data;
            data.OrderInfo.strDealNo = deal;
            data.strMoveMark = mark;
            data.dwMoveInfo1 = static_cast<std::uint32_t>(step);
            move[st].push_back({deal, price, mark, step});
            g_vSetMoveSMTInfoByPrice(price, data, st);
            break;
        }
        case 1:
            if (move.count(st)) {
                if (all) move.erase(st);
                else EraseFirst(move[st], [&](const Entry& e) { return e.deal == deal; });
            }
            g_vDelMoveSMTInfoByDealNO(deal, st, all);
            break;
        case 2:
            if (move.count(st)) {
                if (all) move.erase(st);
                else {
                    auto& l = move[st];
                    l.erase(std::remove_if(l.begin(), l.end(),
                                           [&](const Entry& e) { return e.price == price && e.mark == mark; }),
                            l.end());
                }
            }
            g_vDelMoveSMTInfoByPrice(price, mark, st, all);
            break;
        case 3: {
            CString symbol = rnd.Pick(rnd.Coin() ? "X" : "x", 3);  // symbols compare with letter case
            const bool del = rnd.Coin();
            if (!symbol.IsEmpty()) {
                if (del) {
                    if (symbols.count(st))
                        EraseFirst(symbols[st], [&](const CString& s) { return s == symbol; });
                } else if (!Contains(symbols[st], symbol)) {
                    symbols[st].push_back(symbol);
                }
            }
            g_vSetSmartOrderSymbol(symbol, st, del);
            ASSERT_EQ(g_bIsHaveSmartOrderSymbol(symbol, st),
                      symbols.count(st) && Contains(symbols[st], symbol));
            break;
        }
        default: {
            static const std::vector<Entry> none;
            const std::vector<Entry>& entries = move.count(st) ? move[st] : none;
            std::vector<int> ids;
            for (const auto& e : entries)
                if (e.price == price && e.mark == mark) ids.push_back(e.id);
            const auto found = g_vecGetMoveSMTInfoByPrice(price, mark, st);
            ASSERT_EQ(found.size(), ids.size());
            for (size_t i = 0; i < ids.size(); ++i) ASSERT_EQ(found[i].dwMoveInfo1, static_cast<std::uint32_t>(ids[i]));
            STRUCT_FLASH_MOVESMT_SYNC entry;
            entry.strPrice = "untouched";
            const bool have = g_bGetMoveSMTInfoByDealNO(deal, st, entry);
            const auto first =
                std::find_if(entries.begin(), entries.end(), [&](const Entry& e) { return e.deal == deal; });
            ASSERT_EQ(have, first != entries.end());
            // A hit hands back the price the entry was filed under; a miss leaves the entry alone.
            ASSERT_EQ(entry.strPrice, have ? first->price : CString("untouched")) << "step " << step;
            if (have) ASSERT_EQ(entry.Data.dwMoveInfo1, static_cast<std::uint32_t>(first->id));
            break;
        }
        }
        for (unsigned char s = 0; s < 4; ++s) {
            Strings deals;
            if (move.count(s))
                for (const auto& e : move[s]) deals.push_back(e.deal);
            ASSERT_EQ(g_vecGetMoveSMTDealNOBySyncType(s), deals) << "step " << step;
            ASSERT_EQ(g_bGetHaveMoveSMTOrder(s), !deals.empty());
        }
    }
    orderview::ResetSmartOrderRegistries();
}

}  // namespace
