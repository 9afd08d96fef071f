#pragma once

#include <memory>
#include <type_traits>
#include <utility>

namespace spx {

/// A member of which most records hold nothing: one pointer, and no memory as long as it is as its
/// type makes it. Copies are deep, as those of the value itself.
template <class Value>
class Rare {
 public:
  Rare() = default;
  /// What makes a value makes this too.
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

  /// The value; valid until it is set or the record moves on.
  const Value& get() const {
    static const Value NOTHING{};
    return value_ ? *value_ : NOTHING;
  }

  void set(Value value) { value_ = value == Value{} ? nullptr : std::make_unique<Value>(std::move(value)); }

 private:
  static std::unique_ptr<Value> copyOf(const Rare& other) {
    return other.value_ ? std::make_unique<Value>(*other.value_) : nullptr;
  }

  std::unique_ptr<Value> value_;
};

}  // namespace spx
