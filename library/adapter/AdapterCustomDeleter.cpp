#include "AdapterCustomDeleter.h"

#include <new>

namespace KeywordDetectorAdapterImplementation
{

void AdapterCustomDeleter::operator()(void* object)
{
    ::operator delete(object);
}

} // namespace KeywordDetectorAdapterImplementation
