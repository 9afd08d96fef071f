#pragma once

namespace qs_lib {

/// Has the memory at some addresses fetched, which may lie anywhere, while other things are done. A
/// studbook of a million animals fits no cache: whoever knows what it will read some records later
/// asks for it now.
template <class... Fact>
void fetchAhead(const Fact*... facts) {
  (__builtin_prefetch(facts), ...);
  // The compiler would take a function that does nothing but this for one without effects, and drop
  // the calls of it.
  asm volatile("");
}

}  // namespace qs_lib
