// SPDX-License-Identifier: MIT
#pragma once

#include "platform/views/Drawing.h"

#include <vector>

namespace platform {

/// Anything on the screen that can be moved. Main thread only.
class View {
public:
    virtual ~View() = default;
    virtual void setFrame(const Rect& frame) = 0;
};

/// How speed changes on the way.
enum class AnimationCurve : int { easeInOut = 0, easeIn = 1, easeOut = 2, linear = 3 };

/// What shall move and how; whoever runs it gives each target its frames.
struct ViewAnimation {
    struct Move {
        /// Borrowed: it outlives the animation.
        View* target = nullptr;
        Rect startFrame;
        Rect endFrame;
    };

    /// They run side by side.
    std::vector<Move> moves;
    /// In seconds, not negative.
    double duration = 0;
    AnimationCurve curve = AnimationCurve::easeInOut;
};

} // namespace platform
