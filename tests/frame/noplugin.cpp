/// A shared library in the plug-in folder that is no plug-in.
extern "C" __attribute__((visibility("default"))) int rasterops_not_a_plugin() {
  return 0;
}
