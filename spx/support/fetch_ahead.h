#pragma once

namespace qs_lib {

/// Prefetches the given addresses, valid or not. The records of a million animals do not fit into a
/// cache; a pass that knows what it will read a few records later should prefetch it.
template <class... Fact>
void fetchAhead(const Fact*... facts) {
  (__builtin_prefetch(facts), ...);
  // Without this the compiler sees a function without effects and removes the calls.
  asm volatile("");
}

}  // namespace qs_lib
