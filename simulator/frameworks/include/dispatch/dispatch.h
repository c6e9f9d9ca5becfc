// The part of libdispatch that this program calls. Under the virtual clock the work of a group runs
// inside the wait for it; with a desktop service it runs on threads of its own.
#pragma once

#include <cstdint>

#if __has_include(<sys/qos.h>)
#include <sys/qos.h>
#else
enum qos_class_t : unsigned int { QOS_CLASS_USER_INITIATED = 0x19 };
#endif

#define NSEC_PER_SEC 1000000000ull
#define DISPATCH_TIME_NOW (0ull)
#define DISPATCH_TIME_FOREVER (~0ull)

typedef struct dispatch_object_s {
} * dispatch_object_t;
typedef struct dispatch_queue_s : dispatch_object_s{} * dispatch_queue_t;
typedef struct dispatch_queue_global_s : dispatch_queue_s{} * dispatch_queue_global_t;
typedef struct dispatch_group_s : dispatch_object_s{} * dispatch_group_t;

extern "C" {

using dispatch_time_t = std::uint64_t;
using dispatch_function_t = void (*)(void*);

dispatch_time_t dispatch_time(dispatch_time_t when, std::int64_t nanoseconds);
void dispatch_release(dispatch_object_t object);
dispatch_queue_global_t dispatch_get_global_queue(std::intptr_t quality, std::uintptr_t flags);
void dispatch_async_f(dispatch_queue_t queue, void* context, dispatch_function_t work);

dispatch_group_t dispatch_group_create();
void dispatch_group_enter(dispatch_group_t group);
void dispatch_group_leave(dispatch_group_t group);
// 0 when the group is empty, anything else when `timeout` came first.
std::intptr_t dispatch_group_wait(dispatch_group_t group, dispatch_time_t timeout);

}  // extern "C"
