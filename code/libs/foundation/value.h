// SPDX-License-Identifier: LGPL-2.1-or-later

#pragma once

#include <map>
#include <memory>
#include <optional>
#include <type_traits>
#include <variant>
#include <vector>

#include "foundation/error-info.h"
#include "foundation/export.h"
#include "foundation/string.h"

namespace fn {

namespace internal {

/// The value as a `Target`, nothing where it does not fit or has a fraction. There is one for
/// `int`.
template <class Target>
std::optional<Target> safeDowncast(long long value);
template <class Target>
std::optional<Target> safeDowncast(unsigned long long value);
template <class Target>
std::optional<Target> safeDowncast(double value);

}  // namespace internal

/// A value whose kind is known at run time only: what a JSON document is made of. Copies are deep.
class FOUNDATION_EXPORT Value {
public:
    using List = std::vector<Value>;
    using Map = std::map<Value, Value>;

    enum Type {
        NilType = 0,
        BoolType = 1,
        IntegerType = 2,   ///< Signed, 64 bits.
        UnsignedType = 3,  ///< 64 bits.
        DoubleType = 4,
        StringType = 5,
        ListType = 6,
        MapType = 7,
    };

    // Values are built from what they hold, so that a map reads `map["type"] = 0`.
    // NOLINTBEGIN(google-explicit-constructor)
    constexpr Value() noexcept = default;
    Value(const String& text);
    Value(String&& text) noexcept;
    Value(const char* text);
    template <class Number, class = std::enable_if_t<std::is_arithmetic_v<Number>>>
    Value(Number number) noexcept : content(static_cast<Kept<Number>>(number)) {}
    // NOLINTEND(google-explicit-constructor)

    Value(const Value& other);
    /// Leaves `other` nil.
    Value(Value&& other) noexcept;
    Value& operator=(const Value& other);
    Value& operator=(Value&& other) noexcept;
    ~Value();

    /// Takes the place of whatever was held, which may be what `source` is part of.
    template <class Source,
              class = std::enable_if_t<std::is_constructible_v<Value, const Source&> &&
                                       !std::is_same_v<Source, Value>>>
    Value& operator=(const Source& source) {
        Value(source).swap(*this);
        return *this;
    }

    void swap(Value& other) noexcept;
    /// Releases what is held; the value is nil then.
    void clear() noexcept;

    Type type() const { return static_cast<Type>(content.index()); }
    bool is(Type kind) const { return type() == kind; }

    /// The map; a nil value becomes an empty one first. Raises `fn::RangeException` for every other
    /// kind.
    Map& map();
    /// Raises `fn::RangeException` where the value is no map.
    const Map& map() const;
    /// The same for a list.
    List& list();
    const List& list() const;

    /// The text of a string, the decimal text of a number, "true" or "false". A nil value, a list
    /// and a map are no texts and give the empty one: what a document lacks reads as empty.
    String asString() const;

    /// The value as an `int` or a `double`. Nil is 0, true is 1. Raises `fn::RangeException`, with
    /// `detailInfo()` attached, for what is no number, and as an `int` for a number that does not
    /// fit or has a fraction; as a `double` an integer is rounded to the nearest one.
    template <class Number>
    Number asNumber() const;

    /// Says in a few words what the value is, to be attached to an exception.
    ErrorInfo<String, internal::DetailTag> detailInfo() const;

    /// Negative, 0 or positive. By kind first, then by what is held: strings in plain byte order,
    /// maps and lists entry by entry. Not-a-number comes before all other numbers.
    int compare(const Value& other) const;

    bool operator<(const Value& other) const { return compare(other) < 0; }
    bool operator==(const Value& other) const { return compare(other) == 0; }
    bool operator!=(const Value& other) const { return compare(other) != 0; }

    /// A nil value that lives as long as the process.
    static const Value NIL;  // NOLINT(readability-identifier-naming): a constant of the interface

private:
    template <class Number>
    using Kept =
        std::conditional_t<std::is_same_v<Number, bool>, bool,
                           std::conditional_t<std::is_floating_point_v<Number>, double,
                                              std::conditional_t<std::is_signed_v<Number>,
                                                                 long long, unsigned long long>>>;

    // In the order of `Type`. List and map are held through a pointer, since they hold values.
    using Data = std::variant<std::monostate, bool, long long, unsigned long long, double, String,
                              std::unique_ptr<List>, std::unique_ptr<Map>>;

    FOUNDATION_INTERNAL static Data copyOf(const Data& data);

    Data content;
};

template <>
FOUNDATION_EXPORT int Value::asNumber<int>() const;
template <>
FOUNDATION_EXPORT double Value::asNumber<double>() const;

}  // namespace fn
