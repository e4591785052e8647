// Stands in for the system's own library in a process that says it is ending.
extern "C" __attribute__((visibility("default"))) unsigned char RtlDllShutdownInProgress()
{
    return 1;
}
