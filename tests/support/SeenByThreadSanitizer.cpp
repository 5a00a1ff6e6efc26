// In programs that the thread sanitizer watches. Qt and GStreamer are built without it: it sees none of the locks,
// queues and counts of references by which they hand something from one thread to another, and would report each of
// them. These functions stand before the libraries' own of the same name and tell it.

#include <QMetaObject>
#include <QThreadPool>

#include <glib-object.h>
#include <gst/gst.h>

#include <dlfcn.h>
#include <sanitizer/tsan_interface.h>

#include <functional>

namespace {

/// The library's own function of that name.
template <typename Function>
Function *next(const char *symbol) {
    return reinterpret_cast<Function *>(dlsym(RTLD_NEXT, symbol));
}

/// A function that is called by another thread, which sees all that was done before this was made.
class HandedOver : public QtPrivate::QSlotObjectBase {
public:
    explicit HandedOver(QtPrivate::QSlotObjectBase *function)
        : QSlotObjectBase(&act)
        , m_function(function) {
        __tsan_release(this);
    }

private:
    static void act(int operation, QSlotObjectBase *self, QObject *receiver, void **arguments, bool *isEqual) {
        auto *handedOver = static_cast<HandedOver *>(self);
        __tsan_acquire(handedOver);
        switch (operation) {
        case Destroy:
            handedOver->m_function->destroyIfLastRef();
            delete handedOver;
            break;
        case Call:
            handedOver->m_function->call(receiver, arguments);
            __tsan_release(handedOver);
            break;
        default:
            *isEqual = false;
        }
    }

    QSlotObjectBase *m_function;
};

} // namespace

bool QMetaObject::invokeMethodImpl(QObject *object, QtPrivate::QSlotObjectBase *slot, Qt::ConnectionType type,
                                   void *result) {
    static const auto invoke = next<bool(QObject *, QtPrivate::QSlotObjectBase *, Qt::ConnectionType, void *)>(
        "_ZN11QMetaObject16invokeMethodImplEP7QObjectPN9QtPrivate15QSlotObjectBaseEN2Qt14ConnectionTypeEPv");
    return invoke(object, new HandedOver(slot), type, result);
}

void QThreadPool::start(std::function<void()> function, int priority) {
    static const auto begin =
        next<void(QThreadPool *, std::function<void()>, int)>("_ZN11QThreadPool5startESt8functionIFvvEEi");
    auto *task = new std::function<void()>(std::move(function));
    std::function<void()> run = [this, task] {
        __tsan_acquire(task);
        (*task)();
        delete task;
        __tsan_release(this);
    };
    __tsan_release(task);
    begin(this, std::move(run), priority);
}

bool QThreadPool::waitForDone(int milliseconds) {
    static const auto wait = next<bool(QThreadPool *, int)>("_ZN11QThreadPool11waitForDoneEi");
    const bool isDone = wait(this, milliseconds);
    __tsan_acquire(this);
    return isDone;
}

extern "C" {

#define TAKING(function, type)                                                                                         \
    void function(type *lock) {                                                                                        \
        static const auto take = next<void(type *)>(#function);                                                        \
        take(lock);                                                                                                    \
        __tsan_acquire(lock);                                                                                          \
    }
#define GIVING_BACK(function, type)                                                                                    \
    void function(type *lock) {                                                                                        \
        static const auto giveBack = next<void(type *)>(#function);                                                    \
        __tsan_release(lock);                                                                                          \
        giveBack(lock);                                                                                                \
    }
/// Whoever lets go last destroys, and has seen what all others did before they let go.
#define LETTING_GO(function, type)                                                                                     \
    void function(type *object) {                                                                                      \
        static const auto letGo = next<void(type *)>(#function);                                                       \
        __tsan_release(object);                                                                                        \
        __tsan_acquire(object);                                                                                        \
        letGo(object);                                                                                                 \
    }

TAKING(g_mutex_lock, GMutex)
GIVING_BACK(g_mutex_unlock, GMutex)
TAKING(g_rec_mutex_lock, GRecMutex)
GIVING_BACK(g_rec_mutex_unlock, GRecMutex)
TAKING(g_rw_lock_reader_lock, GRWLock)
GIVING_BACK(g_rw_lock_reader_unlock, GRWLock)
TAKING(g_rw_lock_writer_lock, GRWLock)
GIVING_BACK(g_rw_lock_writer_unlock, GRWLock)
LETTING_GO(gst_mini_object_unref, GstMiniObject)
LETTING_GO(gst_object_unref, void)
LETTING_GO(g_object_unref, void)
LETTING_GO(g_closure_unref, GClosure)

void g_cond_wait(GCond *condition, GMutex *mutex) {
    static const auto wait = next<void(GCond *, GMutex *)>("g_cond_wait");
    __tsan_release(mutex);
    wait(condition, mutex);
    __tsan_acquire(mutex);
}

gboolean g_cond_wait_until(GCond *condition, GMutex *mutex, gint64 end) {
    static const auto wait = next<gboolean(GCond *, GMutex *, gint64)>("g_cond_wait_until");
    __tsan_release(mutex);
    const gboolean isSignalled = wait(condition, mutex, end);
    __tsan_acquire(mutex);
    return isSignalled;
}

} // extern "C"
