#pragma once

#include "platform/ui/UITouch.h"

#include <string>
#include <vector>

/// What reached a view at once.
struct Call {
    std::string operation;
    std::vector<platform::CGPoint> points; ///< in the view
    std::size_t inEvent = 0;               ///< touches in the whole event
    friend bool operator==(const Call&, const Call&) = default;
};

/// A view that notes the touches that reach it.
struct TouchedView : platform::UIView {
    using Touches = platform::UITouches;
    using Event = platform::UIEvent;
    std::vector<Call> calls;

    void touchesBegan(const Touches& touches, const Event& event) override { note("began", touches, event); }
    void touchesMoved(const Touches& touches, const Event& event) override { note("moved", touches, event); }
    void touchesEnded(const Touches& touches, const Event& event) override { note("ended", touches, event); }
    void touchesCancelled(const Touches& touches, const Event& event) override { note("cancelled", touches, event); }

  private:
    void note(const char* operation, const Touches& touches, const Event& event) {
        Call call{operation, {}, event.allTouches.size()};
        for (const auto& touch : touches)
            call.points.push_back(touch->locationInView(*this));
        calls.push_back(call);
    }
};
