#pragma once

#include <memory>
#include <utility>

namespace spx {

/// A member of which most records hold nothing: one pointer, and no memory as long as it is as its
/// type makes it. Copies are deep, as those of the value itself.
template <class Value>
class Rare {
 public:
  Rare() = default;
  Rare(Value value) { set(std::move(value)); }  // NOLINT(google-explicit-constructor): as a value
  Rare(const Rare& other) : value_(copyOf(other)) {}
  Rare(Rare&&) noexcept = default;
  Rare& operator=(const Rare& other) {
    value_ = copyOf(other);
    return *this;
  }
  Rare& operator=(Rare&&) noexcept = default;
  ~Rare() = default;

  /// The value; valid until it is set or the record moves on.
  const Value& get() const {
    static const Value NOTHING{};
    return value_ ? *value_ : NOTHING;
  }

  void set(Value value) {
    value_ = value == Value{} ? nullptr : std::make_unique<Value>(std::move(value));
  }

 private:
  static std::unique_ptr<Value> copyOf(const Rare& other) {
    return other.value_ ? std::make_unique<Value>(*other.value_) : nullptr;
  }

  std::unique_ptr<Value> value_;
};

}  // namespace spx
