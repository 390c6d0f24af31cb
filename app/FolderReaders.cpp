#include "FolderReaders.h"

#include <utility>

#include "Post.h"

namespace kelvo {

FolderReaders::~FolderReaders() {
    for (auto& [folder, orders] : orders_) {
        for (Order& order : orders) {
            order.stop.request_stop();
        }
    }
}

std::stop_source FolderReaders::start(const QString& folder, Read read) {
    std::deque<Order>& orders = orders_[folder];
    orders.push_back({{}, std::move(read)});
    std::stop_source stop = orders.back().stop;
    if (orders.size() == 1) {
        runNext(folder);
    }
    return stop;
}

void FolderReaders::runNext(const QString& folder) {
    const Order& order = orders_.at(folder).front();
    // Replacing the previous thread joins it. It has posted its result, so it is ending.
    threads_[folder] =
        std::jthread([this, context = QPointer(&context_), folder, read = order.read, stop = order.stop.get_token()] {
            post(context, [this, folder, stop, result = read(stop)] { isOver(folder, stop, result); });
        });
}

void FolderReaders::isOver(const QString& folder, const std::stop_token& stop, const Result& result) {
    std::deque<Order>& orders = orders_.at(folder);
    orders.pop_front();
    if (orders.empty()) {
        orders_.erase(folder);
        threads_.erase(folder);
    } else {
        runNext(folder);
    }
    if (!stop.stop_requested()) {
        result();
    }
}

}  // namespace kelvo
