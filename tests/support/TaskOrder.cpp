// Under the thread sanitizer only: GLib hands a task to a thread and its result back with locks of its own, which the
// sanitizer cannot see. What it is told here is what GLib promises.
#include <dlfcn.h>
#include <gio/gio.h>
#include <sanitizer/tsan_interface.h>

namespace {

template <class Function>
Function* real(const char* name) {
  return reinterpret_cast<Function*>(dlsym(RTLD_NEXT, name));
}

const char* const functionKey = "orivex-task-function";

void run(GTask* task, gpointer source, gpointer data, GCancellable* cancellable) {
  __tsan_acquire(task);
  reinterpret_cast<GTaskThreadFunc>(g_object_get_data(G_OBJECT(task), functionKey))(task, source, data, cancellable);
}

}  // namespace

extern "C" {

void g_task_run_in_thread(GTask* task, GTaskThreadFunc function) {
  g_object_set_data(G_OBJECT(task), functionKey, reinterpret_cast<gpointer>(function));
  __tsan_release(task);
  real<decltype(g_task_run_in_thread)>("g_task_run_in_thread")(task, run);
}

void g_task_return_pointer(GTask* task, gpointer result, GDestroyNotify destroy) {
  __tsan_release(task);
  real<decltype(g_task_return_pointer)>("g_task_return_pointer")(task, result, destroy);
}

void g_task_return_error(GTask* task, GError* error) {
  __tsan_release(task);
  real<decltype(g_task_return_error)>("g_task_return_error")(task, error);
}

gpointer g_task_propagate_pointer(GTask* task, GError** error) {
  __tsan_acquire(task);
  return real<decltype(g_task_propagate_pointer)>("g_task_propagate_pointer")(task, error);
}
}
