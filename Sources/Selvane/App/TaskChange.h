#pragma once

namespace selvane {

/// How views show a change of the task list. Animated is what makes rows come, go or find their order by
/// themselves: a new task, the order restored after a tick, a deletion, the clearing of done tasks; each with
/// a spring of response 0.5 s and damping fraction 0.85. All else is plain.
enum class TaskChange { plain, animated };

} // namespace selvane
