// The leak sanitizer reports at the end, when Qt has unloaded its plug-ins and with them the driver: their leaks could
// not be told from ours. So nothing is unloaded under it.
#ifdef __has_feature // clang's
#if __has_feature(address_sanitizer)
#define __SANITIZE_ADDRESS__
#endif
#endif
#ifdef __SANITIZE_ADDRESS__
extern "C" int dlclose(void*)
{
    return 0;
}
#endif
