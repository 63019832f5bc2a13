#include "Platform/CBucket.h"

void CBucket::AddPage(void* page)
{
    char* const first = static_cast<char*>(page);
    for (uint32_t offset = pageSize_ / blockSize_ * blockSize_; offset >= blockSize_;) {
        offset -= blockSize_;
        Push(first + offset);
    }
}
