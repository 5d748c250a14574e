#include "order_data/detail/order_fields.h"

#include <functional>
#include <unordered_map>

#include "order_data/detail/value_parse.h"

namespace orderview {
namespace detail {

namespace {

using Order = CBaseOrder_OrderInfo;
using Deal = CBaseOrder_DealInfo;
template <class Record>
using SetterOf = FieldOf<Record>;
using Setter = SetterOf<Order>;

template <class Record = Order, class Get>
SetterOf<Record> Text(Get get)
{
    return {[get](Record& o, std::string_view t) { get(o) = CString(t.data(), static_cast<int>(t.size())); return true; }, true};
}

template <class Record = Order, class Get>
SetterOf<Record> Code(Get get)
{
    return {[get](Record& o, std::string_view t) { return ParseCharCode(t, get(o)); }, false};
}

template <class Record = Order, class Get>
SetterOf<Record> UInt32(Get get)
{
    return {[get](Record& o, std::string_view t) {
                std::uint64_t v = 0;
                if (!ParseUInt(t, 0xFFFFFFFFu, v)) return false;
                get(o) = static_cast<std::uint32_t>(v);
                return true;
            },
            false};
}

template <class Record = Order, class Get>
SetterOf<Record> Byte(Get get)
{
    return {[get](Record& o, std::string_view t) {
                std::uint64_t v = 0;
                if (!ParseUInt(t, 0xFF, v)) return false;
                get(o) = static_cast<std::uint8_t>(v);
                return true;
            },
            false};
}

template <class Record = Order, class Get>
SetterOf<Record> Int32(Get get)
{
    return {[get](Record& o, std::string_view t) { return ParseInt(t, get(o)); }, false};
}

template <class Record = Order, class Get>
SetterOf<Record> Double(Get get)
{
    return {[get](Record& o, std::string_view t) { return ParseDouble(t, get(o)); }, false};
}

#define OV_FIELD(kind, member) {#member, kind([](Order& o) -> auto& { return o.member; })}
#define OV_COMMODITY(kind, member) {#member, kind([](Order& o) -> auto& { return o.commodity.member; })}

const std::unordered_map<std::string, Setter>& Fields()
{
    static const std::unordered_map<std::string, Setter> fields = {
        OV_FIELD(Text, csAccount),        OV_FIELD(Text, csField4),          OV_FIELD(Text, csField8),
        OV_FIELD(Text, csField12),        OV_FIELD(Code, dwTradeType),       OV_FIELD(Code, dwProductClass),
        OV_FIELD(UInt32, dwDealTime),     OV_FIELD(UInt32, dwOrderDate),     OV_FIELD(UInt32, dwOrderTime),
        OV_FIELD(UInt32, dwBookDate),     OV_FIELD(UInt32, dwBookTime),      OV_FIELD(Code, dwOrderSource),
        OV_FIELD(Text, csAltOrderNo),     OV_FIELD(Text, csOrderNo),         OV_FIELD(Code, dwHoursType),
        OV_FIELD(UInt32, dwAccountDate),  OV_FIELD(Code, dwBS),              OV_FIELD(Code, dwLegBS),
        OV_FIELD(Code, dwOpenOffset),     OV_FIELD(Code, dwDayTrade),        OV_FIELD(Code, dwOrderKind),
        OV_FIELD(Code, dwOrderType),      OV_FIELD(Code, dwLastAction),      OV_FIELD(Code, dwComplexKind),
        OV_FIELD(Code, dwOrderCond),      OV_FIELD(Double, dbOrderPrice),    OV_FIELD(Double, dbOrderPriceFrac),
        OV_FIELD(Double, dbDenominator),  OV_FIELD(Double, dbTriggerPrice),  OV_FIELD(Double, dbTriggerPriceFrac),
        OV_FIELD(Double, dbTriggerDenominator), OV_FIELD(UInt32, dwOrderQty), OV_FIELD(UInt32, dwDealQty),
        OV_FIELD(UInt32, dwCancelQty),    OV_FIELD(Int32, iOrderSeq),        OV_FIELD(Text, strDealNo),
        OV_FIELD(Double, dbAvgPrice),     OV_FIELD(Double, dbAvgPrice2),     OV_FIELD(Int32, iDecimals),
        OV_FIELD(Text, csStatusCode),     OV_FIELD(Text, csStatusMsg),       OV_FIELD(Text, csStateCode),
        OV_FIELD(Code, dwChangeLock),     OV_FIELD(Text, csOperator),        OV_FIELD(Text, csSourceName),
        OV_FIELD(Byte, byStateShown),     OV_FIELD(Text, csFirm),            OV_FIELD(Byte, byChasePrice),
        OV_FIELD(Text, csDeliveryCurrency), OV_FIELD(Text, csChangeLock),
        OV_COMMODITY(Text, csExchangeId), OV_COMMODITY(Code, dwMarketKind),  OV_COMMODITY(Code, dwStockTradeKind),
        OV_COMMODITY(Text, csComId),      OV_COMMODITY(Text, csSymbolID),    OV_COMMODITY(Byte, byServiceID),
        OV_COMMODITY(Code, dwMarketType), OV_COMMODITY(Text, csComMonth), OV_COMMODITY(Text, csComType),
        OV_COMMODITY(Text, csComWeek),  OV_COMMODITY(Text, csComId2),    OV_COMMODITY(Text, csComMonth2),
        OV_COMMODITY(Text, csSymbolID2),   OV_COMMODITY(Double, dbStrikePrice),
        OV_COMMODITY(Code, dwCallPut),    OV_COMMODITY(Double, dbStrikePrice2), OV_COMMODITY(Code, dwCallPut2),
    };
    return fields;
}

#define OV_DEAL(kind, member) {#member, kind<Deal>([](Deal& d) -> auto& { return d.member; })}

// The deal's own fields; the rest of a deal are the fields of its order.
const std::unordered_map<std::string, SetterOf<Deal>>& DealFields()
{
    static const std::unordered_map<std::string, SetterOf<Deal>> fields = {
        OV_DEAL(UInt32, dwDealDate),        OV_DEAL(UInt32, dwDealTime),        OV_DEAL(Code, dwDealMarketKind),
        OV_DEAL(Text, csDealNo),            OV_DEAL(Double, dbDealPrice),       OV_DEAL(Double, dbDealPriceFrac),
        OV_DEAL(Double, dbDealDenominator), OV_DEAL(Double, dbDealPrice2),      OV_DEAL(Double, dbDealPriceFrac2),
        OV_DEAL(Double, dbDealDenominator2), OV_DEAL(Double, dbFee),            OV_DEAL(Double, dbTax),
        OV_DEAL(Double, dbNetAmount),       OV_DEAL(Double, dbTradeValue),
    };
    return fields;
}

#undef OV_FIELD
#undef OV_COMMODITY
#undef OV_DEAL

}  // namespace

const OrderField* FindOrderField(const std::string& name)
{
    const auto it = Fields().find(name);
    return it == Fields().end() ? nullptr : &it->second;
}

const DealField* FindDealOwnField(const std::string& name)
{
    const auto it = DealFields().find(name);
    return it == DealFields().end() ? nullptr : &it->second;
}

SetFieldResult SetOrderField(CBaseOrder_OrderInfo& order, const std::string& name, const std::string& text)
{
    const auto it = Fields().find(name);
    if (it == Fields().end()) return SetFieldResult::UnknownField;
    return it->second.set(order, text) ? SetFieldResult::Ok : SetFieldResult::BadValue;
}

bool IsOrderField(const std::string& name) { return Fields().count(name) != 0; }

SetFieldResult SetDealField(CBaseOrder_DealInfo& deal, const std::string& name, const std::string& text)
{
    const auto it = DealFields().find(name);
    if (it == DealFields().end()) return SetOrderField(deal, name, text);
    return it->second.set(deal, text) ? SetFieldResult::Ok : SetFieldResult::BadValue;
}

bool IsDealField(const std::string& name) { return DealFields().count(name) != 0 || IsOrderField(name); }

}  // namespace detail
}  // namespace orderview
