#pragma once

#include <windows.h>

#include <unknwn.h>

/// An object with the references that COM's rules give it: it is made with one, and gone with the last.
template <typename Interface>
class ReferenceCounted : public Interface
{
public:
    ReferenceCounted() = default;
    ReferenceCounted(const ReferenceCounted&) = delete;
    ReferenceCounted& operator=(const ReferenceCounted&) = delete;

    STDMETHODIMP_(ULONG) AddRef() override
    {
        return ++references;
    }

    STDMETHODIMP_(ULONG) Release() override
    {
        const ULONG left = --references;
        if (left == 0)
        {
            delete this;
        }
        return left;
    }

protected:
    virtual ~ReferenceCounted() = default;

private:
    ULONG references = 1;
};
