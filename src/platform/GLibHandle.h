#pragma once

#include <memory>

#include <gio/gio.h>

namespace corvane {

/// Frees a C handle with the function it belongs to.
template <auto freeFunction>
struct FreeWith {
    template <typename T>
    void operator()(T* handle) const noexcept
    {
        freeFunction(handle);
    }
};

template <typename T>
using GObjectPtr = std::unique_ptr<T, FreeWith<g_object_unref>>;
using GBytesPtr = std::unique_ptr<GBytes, FreeWith<g_bytes_unref>>;
using GCharPtr = std::unique_ptr<gchar, FreeWith<g_free>>;
using GErrorPtr = std::unique_ptr<GError, FreeWith<g_error_free>>;
using GMainContextPtr = std::unique_ptr<GMainContext, FreeWith<g_main_context_unref>>;
using GUriPtr = std::unique_ptr<GUri, FreeWith<g_uri_unref>>;
using GVariantPtr = std::unique_ptr<GVariant, FreeWith<g_variant_unref>>;

// adopt: takes over what a C function gave to its caller. May be null.

template <typename T>
GObjectPtr<T> adopt(T* object)
{
    return GObjectPtr<T>(object);
}
inline GBytesPtr adopt(GBytes* bytes)
{
    return GBytesPtr(bytes);
}
inline GCharPtr adopt(gchar* text)
{
    return GCharPtr(text);
}
inline GErrorPtr adopt(GError* error)
{
    return GErrorPtr(error);
}
inline GUriPtr adopt(GUri* uri)
{
    return GUriPtr(uri);
}
inline GVariantPtr adopt(GVariant* variant)
{
    return GVariantPtr(variant);
}

// retain: adds a reference to what somebody else owns. May be null.

template <typename T>
GObjectPtr<T> retain(T* object)
{
    if (object != nullptr)
        static_cast<void>((g_object_ref)(object));
    return GObjectPtr<T>(object);
}
inline GBytesPtr retain(GBytes* bytes)
{
    return GBytesPtr(bytes == nullptr ? nullptr : g_bytes_ref(bytes));
}

// sink: takes over the floating reference of a new widget or variant.

template <typename T>
GObjectPtr<T> sink(T* object)
{
    static_cast<void>((g_object_ref_sink)(object));
    return GObjectPtr<T>(object);
}
inline GVariantPtr sink(GVariant* variant)
{
    return GVariantPtr(g_variant_ref_sink(variant));
}

/// Collects the error of a C call: pass `out()` where the call wants a GError**, once per object.
class GErrorSlot {
public:
    GErrorSlot() = default;
    GErrorSlot(const GErrorSlot&) = delete;
    GErrorSlot& operator=(const GErrorSlot&) = delete;
    ~GErrorSlot() { g_clear_error(&error_); }

    GError** out() { return &error_; }
    explicit operator bool() const { return error_ != nullptr; }
    const GError* operator->() const { return error_; }
    const GError* get() const { return error_; }

private:
    GError* error_ = nullptr;
};

} // namespace corvane
