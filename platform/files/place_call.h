// Touching files in places of unknown health: a second for each place if no less is asked for, once.
//
// Work on trusted ground is done straight away. Anywhere else it gets a thread and a second; a place that did not
// answer in time is not asked anything more until it has.
#pragma once

#include "platform/files/bounded_call.h"
#include "platform/files/trusted_place.h"

#include <functional>
#include <memory>
#include <string>

namespace platform
{

/// Called on any thread.
using PlaceAnswers = std::function<void()>;

/// Begins to ask a place; false when it still owes an answer.
bool BeginAsking(const std::string& place);
/// The place has answered.
void EndAsking(const std::string& place);
/// Has `answers` called when the place answers; `key` tells apart what is waited for. If it has answered meanwhile, at
/// once.
void WhenItAnswers(const std::string& place, const std::string& key, const PlaceAnswers& answers);

/// The result of `work`, which must not be null and looks at nothing but the file or folder at `path` and what is below
/// it; null when its place does not answer within `patience` or still owes an answer. Then the late result is handed to
/// nobody, but `answers`, if there is one, is called once it is there. `work` and `answers` must own all they use.
template <typename T>
std::shared_ptr<T> AskPlace(const std::string& path, std::function<std::shared_ptr<T>()> work,
                            const PlaceAnswers& answers = {},
                            std::chrono::milliseconds patience = std::chrono::milliseconds(1000))
{
    if (IsAtHand(path))
        return work();
    const Whereabouts where = TrustedWalk().Follow(path);
    if (!where.foreign)
        return work();
    const std::string place = where.path;
    std::shared_ptr<T> result;
    if (BeginAsking(place))
        result = CallWithin<T>(patience,
                               [place, work = std::move(work)]
                               {
                                   std::shared_ptr<T> answer = work();
                                   EndAsking(place);
                                   return answer;
                               });
    if (result == nullptr && answers)
        WhenItAnswers(place, path, answers);
    return result;
}

} // namespace platform
