// A dynamic library that is no driver module.
extern "C" __attribute__((visibility("default"))) int SomethingElse() {
    return 1;
}
