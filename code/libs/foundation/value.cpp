// SPDX-License-Identifier: LGPL-2.1-or-later

#include "foundation/value.h"

#include <cmath>
#include <cstddef>
#include <limits>
#include <utility>

#include "foundation/exception.h"
#include "foundation/utf8.h"

namespace fn {

namespace internal {

template <>
std::optional<int> safeDowncast<int>(long long value) {
    const bool fits =
        value >= std::numeric_limits<int>::min() && value <= std::numeric_limits<int>::max();
    return fits ? std::optional<int>(static_cast<int>(value)) : std::nullopt;
}

template <>
std::optional<int> safeDowncast<int>(unsigned long long value) {
    const bool fits = value <= static_cast<unsigned>(std::numeric_limits<int>::max());
    return fits ? std::optional<int>(static_cast<int>(value)) : std::nullopt;
}

template <>
std::optional<int> safeDowncast<int>(double value) {
    // Not-a-number fails both comparisons.
    const bool fits = value >= std::numeric_limits<int>::min() &&
                      value <= std::numeric_limits<int>::max() && std::trunc(value) == value;
    return fits ? std::optional<int>(static_cast<int>(value)) : std::nullopt;
}

}  // namespace internal

namespace {

/// Longer texts are cut in a description: it stands in one line of a log.
constexpr std::size_t describedBytes = 60;

String quoted(const String& text) {
    if (text.size() <= describedBytes) {
        return String("the text \"") + text + "\"";
    }
    const StringView start = to_string_view(text).substr(0, describedBytes);
    const std::size_t whole = start.size() - utf8::incompleteTail(start);
    return String("a text of ") + std::to_string(text.size()) + " bytes, \"" +
           std::string(start.substr(0, whole)) + "...\"";
}

String describe(const Value& value) {
    switch (value.type()) {
        case Value::NilType: return "nil";
        case Value::BoolType: return value.asString();
        case Value::IntegerType:
        case Value::UnsignedType:
        case Value::DoubleType: return String("the number ") + value.asString();
        case Value::StringType: return quoted(value.asString());
        case Value::ListType:
            return String("a list with ") + std::to_string(value.list().size()) + " entries";
        case Value::MapType: break;
    }
    return String("a map with ") + std::to_string(value.map().size()) + " entries";
}

[[noreturn]] void raise(const char* message, const Value& value) {
    RangeException exception(message, Exception::NoStackTrace);
    exception << value.detailInfo();
    throw RangeException(exception);
}

template <class Number>
int order(Number left, Number right) {
    return left < right ? -1 : static_cast<int>(right < left);
}

/// The order of what two values of one kind hold: negative, 0 or positive. One answer for both
/// directions keeps the comparison of nested values linear; two calls of "less" at each level would
/// double the work with each.
struct Order {
    int operator()(std::monostate, std::monostate) const { return 0; }
    int operator()(double left, double right) const {
        const bool isUnordered = std::isnan(left) || std::isnan(right);
        return isUnordered ? order(!std::isnan(left), !std::isnan(right)) : order(left, right);
    }
    int operator()(const String& left, const String& right) const { return left.compare(right); }
    int operator()(const Value& left, const Value& right) const { return left.compare(right); }
    int operator()(const Value::Map::value_type& left, const Value::Map::value_type& right) const {
        const int keys = left.first.compare(right.first);
        return keys != 0 ? keys : left.second.compare(right.second);
    }
    template <class Container>
    int operator()(const std::unique_ptr<Container>& left,
                   const std::unique_ptr<Container>& right) const {
        auto mine = left->begin();
        auto others = right->begin();
        while (mine != left->end() && others != right->end()) {
            const int result = (*this)(*mine++, *others++);
            if (result != 0) {
                return result;
            }
        }
        return order(left->size(), right->size());
    }
    template <class Number, class = std::enable_if_t<std::is_integral_v<Number>>>
    int operator()(Number left, Number right) const {
        return order(left, right);
    }
};

}  // namespace

const Value Value::NIL;

Value::Value(const String& text) : content(text) {}
Value::Value(String&& text) noexcept : content(std::move(text)) {}
Value::Value(const char* text) : content(String(text)) {}
Value::Value(const Value& other) : content(copyOf(other.content)) {}

Value::Value(Value&& other) noexcept {
    swap(other);
}

Value& Value::operator=(const Value& other) {
    Value(other).swap(*this);
    return *this;
}

Value& Value::operator=(Value&& other) noexcept {
    Value taken(std::move(other));
    taken.swap(*this);
    return *this;
}

Value::~Value() {
    clear();
}

void Value::swap(Value& other) noexcept {
    content.swap(other.content);
}

void Value::clear() noexcept {
    Data().swap(content);
}

Value::Data Value::copyOf(const Data& data) {
    if (const auto* const list = std::get_if<std::unique_ptr<List>>(&data)) {
        return std::make_unique<List>(**list);
    }
    if (const auto* const map = std::get_if<std::unique_ptr<Map>>(&data)) {
        return std::make_unique<Map>(**map);
    }
    return std::visit(
        [](const auto& held) -> Data {
            if constexpr (std::is_copy_constructible_v<std::decay_t<decltype(held)>>) {
                return held;
            } else {
                return {};
            }
        },
        data);
}

Value::Map& Value::map() {
    if (is(NilType)) {
        content = std::make_unique<Map>();
    }
    return const_cast<Map&>(std::as_const(*this).map());
}

const Value::Map& Value::map() const {
    const auto* const map = std::get_if<std::unique_ptr<Map>>(&content);
    if (map == nullptr) {
        raise("Value is not a map", *this);
    }
    return **map;
}

Value::List& Value::list() {
    if (is(NilType)) {
        content = std::make_unique<List>();
    }
    return const_cast<List&>(std::as_const(*this).list());
}

const Value::List& Value::list() const {
    const auto* const list = std::get_if<std::unique_ptr<List>>(&content);
    if (list == nullptr) {
        raise("Value is not a list", *this);
    }
    return **list;
}

String Value::asString() const {
    switch (type()) {
        case BoolType: return std::get<bool>(content) ? "true" : "false";
        case IntegerType: return String(std::to_string(std::get<long long>(content)));
        case UnsignedType: return String(std::to_string(std::get<unsigned long long>(content)));
        case DoubleType: return String::number(std::get<double>(content));
        case StringType: return std::get<String>(content);
        case NilType:
        case ListType:
        case MapType: break;
    }
    return {};
}

template <>
int Value::asNumber<int>() const {
    std::optional<int> number;
    switch (type()) {
        case NilType: return 0;
        case BoolType: return std::get<bool>(content) ? 1 : 0;
        case IntegerType: number = internal::safeDowncast<int>(std::get<long long>(content)); break;
        case UnsignedType:
            number = internal::safeDowncast<int>(std::get<unsigned long long>(content));
            break;
        case DoubleType: number = internal::safeDowncast<int>(std::get<double>(content)); break;
        case StringType:
        case ListType:
        case MapType: raise("Value can not be implicitly converted to integral type", *this);
    }
    if (!number) {
        raise("Value can not be converted to requested type without loss", *this);
    }
    return *number;
}

template <>
double Value::asNumber<double>() const {
    switch (type()) {
        case NilType: return 0.0;
        case BoolType: return std::get<bool>(content) ? 1.0 : 0.0;
        case IntegerType: return static_cast<double>(std::get<long long>(content));
        case UnsignedType: return static_cast<double>(std::get<unsigned long long>(content));
        case DoubleType: return std::get<double>(content);
        case StringType:
        case ListType:
        case MapType: break;
    }
    raise("Value can not be implicitly converted to floating point type", *this);
}

ErrorInfo<String, internal::DetailTag> Value::detailInfo() const {
    return ErrorInfo<String, internal::DetailTag>(describe(*this));
}

int Value::compare(const Value& other) const {
    if (type() != other.type()) {
        return order(type(), other.type());
    }
    return std::visit(
        [](const auto& left, const auto& right) {
            if constexpr (std::is_same_v<decltype(left), decltype(right)>) {
                return Order()(left, right);
            } else {
                return 0;  // Never reached: the kinds are the same.
            }
        },
        content, other.content);
}

}  // namespace fn
