#include <md5.h>

#include "pexa/cdr_stream.h"

namespace pexa::base {
namespace {

void compute_md5(const void* bytes, size_t size, DDS_Octet digest[16]) {
    MD5_CTX context;
    MD5Init(&context);
    MD5Update(&context, static_cast<const uint8_t*>(bytes), size);
    MD5Final(digest, &context);
}

}  // namespace
}  // namespace pexa::base

void QELMd5_compute(const void* bytes, size_t size, DDS_Octet digest[16]) {
    pexa::base::compute_md5(bytes, size, digest);
}
