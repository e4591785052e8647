// A module to be loaded by name.
extern "C" __attribute__((visibility("default"))) int sample_answer()
{
    return 42;
}
