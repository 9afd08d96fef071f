#pragma once

#include <memory>
#include <type_traits>
#include <utility>

namespace spx {

/// A member that is default-constructed in most records: a null pointer while it equals Value{}, so
/// that such records need no memory for it. Copies are deep. Supports == and, where Value does, + and
/// empty(), like the value itself.
template <class Value>
class Rare {
 public:
  Rare() = default;
  /// Constructible like Value.
  template <class From>
  requires std::is_constructible_v<Value, From> &&
      (!std::is_same_v<std::remove_cvref_t<From>, Rare>)Rare(From&& from) {  // NOLINT(google-explicit-constructor,
                                                                             // bugprone-forwarding-reference-overload)
    set(Value(std::forward<From>(from)));
  }
  Rare(const Rare& other) : value_(copyOf(other)) {}
  Rare(Rare&&) noexcept = default;
  Rare& operator=(const Rare& other) {
    value_ = copyOf(other);
    return *this;
  }
  Rare& operator=(Rare&&) noexcept = default;
  ~Rare() = default;

  operator const Value&() const { return get(); }  // NOLINT(google-explicit-constructor)

  /// The value. The reference is valid until the value is set or the record moves.
  const Value& get() const {
    static const Value NOTHING{};
    return value_ ? *value_ : NOTHING;
  }

  void set(Value value) { value_ = value == Value{} ? nullptr : std::make_unique<Value>(std::move(value)); }

  bool empty() const requires requires(const Value& value) { value.empty(); }
  { return get().empty(); }

  friend bool operator==(const Rare& left, const Rare& right) { return left.get() == right.get(); }

  template <class Other>
  requires(!std::is_same_v<Other, Rare>) && requires(const Value& left, const Other& right) { left == right; }
  friend bool operator==(const Rare& left, const Other& right) { return left.get() == right; }

  friend Value operator+(const Rare& left, const Rare& right) requires requires(const Value& value) { value + value; }
  { return left.get() + right.get(); }

  template <class Other>
  requires(!std::is_same_v<Other, Rare>) && requires(const Value& left, const Other& right) { left + right; }
  friend Value operator+(const Rare& left, const Other& right) { return left.get() + right; }

  template <class Other>
  requires(!std::is_same_v<Other, Rare>) && requires(const Other& left, const Value& right) { left + right; }
  friend Value operator+(const Other& left, const Rare& right) { return left + right.get(); }

 private:
  static std::unique_ptr<Value> copyOf(const Rare& other) {
    return other.value_ ? std::make_unique<Value>(*other.value_) : nullptr;
  }

  std::unique_ptr<Value> value_;
};

}  // namespace spx
