#include "order_data/order_fields.h"

#include <functional>
#include <unordered_map>

#include "order_data/value_parse.h"

namespace orderview {
namespace detail {

namespace {

using Order = CBaseOrder_OrderInfo;
using Setter = std::function<bool(Order&, const std::string&)>;

template <class Get>
Setter Text(Get get)
{
    return [get](Order& o, const std::string& t) { get(o) = CString(t); return true; };
}

template <class Get>
Setter Code(Get get)
{
    return [get](Order& o, const std::string& t) { return ParseCharCode(t, get(o)); };
}

template <class Get>
Setter UInt32(Get get)
{
    return [get](Order& o, const std::string& t) {
        std::uint64_t v = 0;
        if (!ParseUInt(t, 0xFFFFFFFFu, v)) return false;
        get(o) = static_cast<std::uint32_t>(v);
        return true;
    };
}

template <class Get>
Setter Byte(Get get)
{
    return [get](Order& o, const std::string& t) {
        std::uint64_t v = 0;
        if (!ParseUInt(t, 0xFF, v)) return false;
        get(o) = static_cast<std::uint8_t>(v);
        return true;
    };
}

template <class Get>
Setter Int32(Get get)
{
    return [get](Order& o, const std::string& t) { return ParseInt(t, get(o)); };
}

template <class Get>
Setter Double(Get get)
{
    return [get](Order& o, const std::string& t) { return ParseDouble(t, get(o)); };
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
        OV_COMMODITY(Text, csComWeek),    OV_COMMODITY(Text, csSymbolID2),   OV_COMMODITY(Double, dbStrikePrice),
        OV_COMMODITY(Code, dwCallPut),    OV_COMMODITY(Double, dbStrikePrice2), OV_COMMODITY(Code, dwCallPut2),
    };
    return fields;
}

#undef OV_FIELD
#undef OV_COMMODITY

}  // namespace

SetFieldResult SetOrderField(CBaseOrder_OrderInfo& order, const std::string& name, const std::string& text)
{
    const auto it = Fields().find(name);
    if (it == Fields().end()) return SetFieldResult::UnknownField;
    return it->second(order, text) ? SetFieldResult::Ok : SetFieldResult::BadValue;
}

bool IsOrderField(const std::string& name) { return Fields().count(name) != 0; }

}  // namespace detail
}  // namespace orderview
