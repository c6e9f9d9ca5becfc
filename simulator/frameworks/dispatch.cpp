#include "dispatch/dispatch.h"

#include "simulator/frameworks/object.h"

void dispatch_release(dispatch_object_t object) {
  simulator::release(object, __func__);
}

dispatch_group_t dispatch_group_create() {
  return simulator::make<dispatch_group_t>(simulator::DispatchGroup{}, __func__);
}

dispatch_queue_global_t dispatch_get_global_queue(std::intptr_t quality, std::uintptr_t flags) {
  static dispatch_queue_global_s queue;
  if (quality != QOS_CLASS_USER_INITIATED || flags != 0) {
    simulator::refuse(__func__, "only the user-initiated queue is modelled");
  }
  return &queue;
}
