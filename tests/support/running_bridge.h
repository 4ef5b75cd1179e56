// The bridge's listening side, running in a thread on a free loopback port in front of the
// fake module, as quilmark-bridge.exe runs in front of the real one. Touch the module only
// after Stop.
#pragma once

#include <algorithm>
#include <atomic>
#include <mutex>
#include <thread>
#include <vector>

#include "link/bridge_server.h"
#include "link/net_bridge_loop.h"
#include "support/fake_module.h"

namespace quilmark {

class Running_Bridge {
  public:
    explicit Running_Bridge(Fake_Module_Transport& module, Bridge_Limits_Rec limits = {}) {
        limits.poll_ms = 20;
        bool ready =
            Bridge_Open(bridge, module) == Link_Result::Ok && Open_Bridge_Listener(0, listener);
        if (ready) {
            server = std::thread([this, limits] {
                Run_Bridge(bridge, listener, stopping, limits, [this](Bridge_Outcome outcome) {
                    std::lock_guard<std::mutex> hold(outcomes_lock);
                    outcomes.push_back(outcome);
                });
            });
        }
    }
    ~Running_Bridge() { Stop(); }
    Running_Bridge(const Running_Bridge&) = delete;

    uint16_t Port() const { return listener.port; }
    void Stop() {
        if (server.joinable()) {
            stopping = true;
            server.join();
        }
        Close_Bridge_Listener(listener);
        Bridge_Close(bridge);
    }
    size_t Count(Bridge_Outcome outcome) {
        std::lock_guard<std::mutex> hold(outcomes_lock);
        return static_cast<size_t>(std::count(outcomes.begin(), outcomes.end(), outcome));
    }

  private:
    Bridge_Server_Rec bridge;
    Bridge_Listener_Rec listener;
    std::atomic<bool> stopping{false};
    std::thread server;
    std::mutex outcomes_lock;
    std::vector<Bridge_Outcome> outcomes;
};

} // namespace quilmark
