// Says which lock guards which field, so that clang's -Wthread-safety can check it. Other compilers
// read nothing here.

#pragma once

#if defined(__clang__)
#define QV_THREAD_ANNOTATION(x) __attribute__((x))
#else
#define QV_THREAD_ANNOTATION(x)
#endif

#define QV_CAPABILITY(name) QV_THREAD_ANNOTATION(capability(name))
#define QV_SCOPED_CAPABILITY QV_THREAD_ANNOTATION(scoped_lockable)
#define QV_GUARDED_BY(lock) QV_THREAD_ANNOTATION(guarded_by(lock))
#define QV_REQUIRES(...) QV_THREAD_ANNOTATION(requires_capability(__VA_ARGS__))
#define QV_EXCLUDES(...) QV_THREAD_ANNOTATION(locks_excluded(__VA_ARGS__))
#define QV_ACQUIRE(...) QV_THREAD_ANNOTATION(acquire_capability(__VA_ARGS__))
#define QV_ACQUIRE_SHARED(...) QV_THREAD_ANNOTATION(acquire_shared_capability(__VA_ARGS__))
#define QV_RELEASE(...) QV_THREAD_ANNOTATION(release_capability(__VA_ARGS__))
#define QV_RELEASE_SHARED(...) QV_THREAD_ANNOTATION(release_shared_capability(__VA_ARGS__))
#define QV_RELEASE_GENERIC(...) QV_THREAD_ANNOTATION(release_generic_capability(__VA_ARGS__))
#define QV_NO_THREAD_SAFETY_ANALYSIS QV_THREAD_ANNOTATION(no_thread_safety_analysis)
