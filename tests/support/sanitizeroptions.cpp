/// Lets an allocation that cannot succeed return null under the sanitizers, as it does without them: tests
/// ask for such allocations. The sanitizers' libraries look these functions up by name.

#if defined(__SANITIZE_ADDRESS__)
extern "C" __attribute__((visibility("default"))) const char* __asan_default_options() {
  return "allocator_may_return_null=1";
}
#endif

#if defined(__SANITIZE_THREAD__)
extern "C" __attribute__((visibility("default"))) const char* __tsan_default_options() {
  return "allocator_may_return_null=1";
}
#endif
