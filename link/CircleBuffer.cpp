#include "CircleBuffer.h"

#include <algorithm>
#include <array>
#include <mutex>

namespace kelvo {
namespace {

std::mutex rx_mutex;  // guards the variables below
std::array<std::uint8_t, kRxBufferSize> rx_buffer;
std::uint32_t rx_buffer_count = 0;
std::uint32_t rx_buffer_writep = 0;
std::uint32_t rx_buffer_readp = 0;

}  // namespace

bool putRX_buffer(const std::uint8_t* data, std::uint32_t n) {
    const std::lock_guard lock(rx_mutex);
    if (kRxBufferSize - rx_buffer_count < n) {
        return false;
    }
    const std::uint32_t beforeWrap = std::min(n, kRxBufferSize - rx_buffer_writep);
    std::copy_n(data, beforeWrap, rx_buffer.begin() + rx_buffer_writep);
    std::copy_n(data + beforeWrap, n - beforeWrap, rx_buffer.begin());
    rx_buffer_writep = (rx_buffer_writep + n) % kRxBufferSize;
    rx_buffer_count += n;
    return true;
}

bool getRX_buffer(std::uint32_t n, std::uint8_t* out) {
    const std::lock_guard lock(rx_mutex);
    if (rx_buffer_count < n) {
        return false;
    }
    const std::uint32_t beforeWrap = std::min(n, kRxBufferSize - rx_buffer_readp);
    std::copy_n(rx_buffer.begin() + rx_buffer_readp, beforeWrap, out);
    std::copy_n(rx_buffer.begin(), n - beforeWrap, out + beforeWrap);
    rx_buffer_readp = (rx_buffer_readp + n) % kRxBufferSize;
    rx_buffer_count -= n;
    return true;
}

void ClearRx_buffer() {
    const std::lock_guard lock(rx_mutex);
    rx_buffer_count = 0;
    rx_buffer_writep = 0;
    rx_buffer_readp = 0;
}

}  // namespace kelvo
