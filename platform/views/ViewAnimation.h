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

/// How the speed changes during an animation.
enum class AnimationCurve : int { easeInOut = 0, easeIn = 1, easeOut = 2, linear = 3 };

/// Which views to move and how; whoever runs it sets the frames of each target.
struct ViewAnimation {
    struct Move {
        /// Borrowed; must outlive the animation.
        View* target = nullptr;
        Rect startFrame;
        Rect endFrame;
    };

    /// All run at the same time.
    std::vector<Move> moves;
    /// In seconds, not negative.
    double duration = 0;
    AnimationCurve curve = AnimationCurve::easeInOut;
};

} // namespace platform
