// SPDX-License-Identifier: GPL-3.0-or-later

#include "ZelvraCore/media/reel/PictureReel.h"

#include "ZelvraCore/media/reel/PictureSequence.h"

#include <algorithm>
#include <condition_variable>
#include <exception>
#include <malloc.h>
#include <map>
#include <mutex>
#include <set>
#include <thread>
#include <utility>

namespace zelvra::media {

namespace {

using Picture = std::shared_ptr<const RawPicture>;
/// By index. Null: it cannot be decoded.
using Pictures = std::map<std::size_t, Picture>;

/// Freed pictures would otherwise stay with the process.
void giveBackMemory() {
#ifdef __GLIBC__
    malloc_trim(0);
#endif
}

std::vector<std::size_t> groupStartsOf(const FrameIndex& frames, const std::vector<std::int64_t>& syncs) {
    std::vector<std::size_t> starts{0};
    for (const std::int64_t sync : syncs) {
        const auto frame = frames.containing({sync, frames.timescale()});
        if (frame && frame->index > starts.back()) {
            starts.push_back(frame->index);
        }
    }
    return starts;
}

/// A movie being decoded. Of the worker's thread alone.
struct OpenMovie {
    OpenMovie(std::shared_ptr<const Asset> movie, const std::vector<std::int64_t>& syncTimes)
        : asset(std::move(movie)),
          frames(asset->frames()),
          plan(groupStartsOf(frames, syncTimes), frames.count()) {}

    std::int64_t ticksOf(std::size_t index) const {
        return ticksOfTime(frames.frame(index).time, sequence->timeBase());
    }
    std::optional<std::size_t> indexOf(std::int64_t ticks) const {
        const AVRational base = sequence->timeBase();
        const CMTime time(ticks * base.num, base.den);
        const auto frame = frames.containing(time);
        return frame && frame->time == time ? std::optional(frame->index) : std::nullopt;
    }

    std::shared_ptr<const Asset> asset;
    const FrameIndex& frames;
    ReelPlan plan;
    std::size_t pictureMemory = 0; ///< of one picture in bytes; 0 while that is not known
    std::unique_ptr<PictureSequence> sequence;
    std::optional<std::size_t> position; ///< the picture that the sequence has come to
    bool isDrained = true;               ///< the sequence cannot be continued
};

} // namespace

class PictureReel::Worker {
public:
    explicit Worker(std::function<void()> changed)
        : changed_(std::move(changed)), thread_([this](const std::stop_token& stop) { run(stop); }) {}

    void open(std::shared_ptr<const Asset> asset, std::vector<std::int64_t> syncTimes) {
        const std::scoped_lock lock(mutex_);
        pictures_.clear();
        asset_ = std::move(asset);
        syncTimes_ = std::move(syncTimes);
        aim_.reset();
        wish();
    }

    void aim(const ReelAim& aim) {
        const std::scoped_lock lock(mutex_);
        if (asset_ && aim_ != aim) {
            aim_ = aim;
            wish();
        }
    }

    void clear() {
        const std::scoped_lock lock(mutex_);
        pictures_.clear();
        aim_.reset();
        wish();
    }

    Picture at(std::size_t index) const {
        const std::scoped_lock lock(mutex_);
        const auto found = pictures_.find(index);
        return found == pictures_.end() ? nullptr : found->second;
    }

    bool isMissing(std::size_t index) const {
        const std::scoped_lock lock(mutex_);
        const auto found = pictures_.find(index);
        return found != pictures_.end() && !found->second;
    }

    std::optional<std::size_t> nearest(std::size_t index) const {
        const std::scoped_lock lock(mutex_);
        std::optional<std::size_t> nearest;
        const auto distance = [&](std::size_t other) {
            return index < other ? other - index : index - other;
        };
        for (const auto& [other, picture] : pictures_) {
            if (picture && (!nearest || distance(other) < distance(*nearest))) {
                nearest = other;
            }
        }
        return nearest;
    }

    bool isSettled() const {
        const std::scoped_lock lock(mutex_);
        return settled_;
    }

private:
    /// How a pass over the packets of a run ended.
    enum class Pass { complete, outdated };

    void wish() {
        ++wishes_;
        settled_ = false;
        wake_.notify_one();
    }

    void run(const std::stop_token& stop) {
        std::uint64_t seen = 0;
        std::unique_lock lock(mutex_);
        while (!stop.stop_requested()) {
            seen = wishes_;
            const auto next = takeWish(lock);
            if (next) {
                lock.unlock();
                carryOut(*next, stop);
                lock.lock();
            } else if (seen == wishes_) {
                settled_ = true;
                changed_();
                wake_.wait(lock, stop, [&] { return wishes_ != seen; });
            }
        }
    }

    /// The next run. If there is none, frees what resting does not need.
    std::optional<ReelRun> takeWish(std::unique_lock<std::mutex>& lock) {
        const std::shared_ptr<const Asset> asset = asset_;
        if (asset != (movie_ ? movie_->asset : nullptr)) {
            const std::vector<std::int64_t> syncTimes = syncTimes_;
            lock.unlock();
            movie_.reset();
            giveBackMemory();
            if (asset) {
                movie_ = std::make_unique<OpenMovie>(asset, syncTimes);
            }
            lock.lock();
        }
        if (!movie_ || asset_ != asset) {
            return std::nullopt;
        }
        std::optional<ReelRun> next;
        if (aim_) {
            current_ = *aim_;
            giveUp();
            next = movie_->plan.nextRun(current_, isKept_);
        }
        if (!next && (!aim_ || aim_->motion == ReelMotion::resting)) {
            lock.unlock();
            movie_->sequence.reset();
            giveBackMemory();
            lock.lock();
        }
        return next;
    }

    void carryOut(const ReelRun& run, const std::stop_token& stop) {
        try {
            decode(run, stop);
        } catch (const std::exception&) {
            // The movie cannot be read here. Its player reports that when it plays.
            movie_->sequence.reset();
            for (const std::size_t index : missingOf(run)) {
                keep(index, nullptr);
            }
        }
        taken_.clear();
        passed_.clear();
    }

    /// Decodes from the sync sample before the run. If that does not give all its pictures (they lead their
    /// sync sample, or decoding recovers only later), decodes from earlier ones. What is then still missing
    /// is damaged, and replaced.
    void decode(const ReelRun& run, const std::stop_token& stop) {
        constexpr int mostPasses = 8;
        if (!movie_->sequence) {
            movie_->sequence = std::make_unique<PictureSequence>(*movie_->asset);
            movie_->isDrained = true;
        }
        PictureSequence& sequence = *movie_->sequence;
        if (continues(run)) {
            if (pass(run, false, stop) == Pass::outdated || missingOf(run).empty()) {
                return;
            }
        }
        std::int64_t from = movie_->ticksOf(missingOf(run).front());
        std::optional<std::int64_t> lastStart;
        for (int left = mostPasses; left > 0; --left) {
            startAt(from);
            if (pass(run, false, stop) == Pass::outdated) {
                return;
            }
            std::vector<std::size_t> missing = missingOf(run);
            if (missing.empty()) {
                return;
            }
            const auto start = sequence.startedAt();
            const bool farthest = left == 1 || !start || (lastStart && start->decodeTime >= *lastStart);
            if (farthest || (start->clean && start->time <= movie_->ticksOf(missing.front()))) {
                startAt(from);
                if (pass(run, true, stop) == Pass::outdated) {
                    return;
                }
                missing = missingOf(run);
                const bool isShownThen =
                    !missing.empty() && !passed_.empty() && passed_.begin()->first < missing.front();
                if (missing.empty() || farthest || isShownThen) {
                    replace(missing);
                    return;
                }
            }
            lastStart = start->decodeTime;
            from = start->decodeTime - 1;
        }
    }

    /// Whether the sequence is on its way to what the run wants first.
    bool continues(const ReelRun& run) const {
        if (movie_->isDrained || !movie_->position) {
            return false;
        }
        const std::size_t wanted = isKept(current_.index) ? run.first : std::max(run.first, current_.index);
        const std::size_t position = *movie_->position;
        return position < wanted && movie_->plan.groupStart(wanted) <= position + 1;
    }

    void startAt(std::int64_t ticks) {
        movie_->sequence->start(ticks);
        movie_->position.reset();
        movie_->isDrained = false;
        passed_.clear();
    }

    /// Decodes up to the run's last picture. `all`: also pictures that may have to replace a missing one.
    Pass pass(const ReelRun& run, bool all, const std::stop_token& stop) {
        constexpr int mostAhead = 32; // packets; a run that does not start clean pushes its pictures out late
        PictureSequence& sequence = *movie_->sequence;
        const std::int64_t first = movie_->ticksOf(run.first);
        const std::int64_t last = movie_->ticksOf(run.last);
        const auto isNeeded = [&](std::int64_t ticks) {
            if (all || ticks < first || run.stride == 1) {
                return all || ticks >= first;
            }
            const auto index = movie_->indexOf(ticks);
            return !index || run.wants(*index) || *index == current_.index;
        };
        const auto receive = [&](std::int64_t ticks, const AVFrame& frame) {
            if (const auto index = movie_->indexOf(ticks)) {
                movie_->position = index;
                take(*index, frame, run, all);
            }
        };
        for (int ahead = 0; !movie_->position || *movie_->position < run.last;) {
            if (stop.stop_requested() || isOutdated(run)) {
                return Pass::outdated;
            }
            const auto decodeTime = sequence.advance(isNeeded, receive);
            ahead += decodeTime && *decodeTime > last ? 1 : 0;
            if (!decodeTime || ahead > mostAhead) {
                sequence.drain(movie_->position.has_value(), receive);
                movie_->isDrained = true;
                break;
            }
        }
        return Pass::complete;
    }

    void take(std::size_t index, const AVFrame& frame, const ReelRun& run, bool all) {
        const bool isAskedFor = run.wants(index) || (index > run.last && index % run.stride == 0);
        if (isAskedFor || index == current_.index) {
            taken_.insert(index);
            keep(index, std::make_shared<const RawPicture>(frame));
        }
        if (all) {
            passed_[index] = std::make_shared<const RawPicture>(frame);
            while (passed_.size() > 2 && std::next(passed_.begin())->first < run.first) {
                passed_.erase(passed_.begin()); // only the last one before the run can replace anything
            }
        }
    }

    /// As on a player's screen: by the last picture before it, else by the first after it.
    void replace(const std::vector<std::size_t>& missing) {
        for (const std::size_t index : missing) {
            const auto after = passed_.upper_bound(index);
            const auto replacement = after == passed_.begin() ? after : std::prev(after);
            keep(index, replacement == passed_.end() ? nullptr : replacement->second);
        }
    }

    /// Whether something else has to be decoded now.
    bool isOutdated(const ReelRun& run) {
        const std::scoped_lock lock(mutex_);
        if (asset_ != movie_->asset || !aim_) {
            return true;
        }
        if (current_ == *aim_) {
            return false;
        }
        current_ = *aim_;
        giveUp();
        return !movie_->plan.isUseful(run, movie_->position, current_, isKept_);
    }

    std::vector<std::size_t> missingOf(const ReelRun& run) const {
        const std::scoped_lock lock(mutex_);
        std::vector<std::size_t> missing;
        for (std::size_t index = run.first; index <= run.last; ++index) {
            if (run.wants(index) && !pictures_.contains(index) && !taken_.contains(index)) {
                missing.push_back(index);
            }
        }
        return missing;
    }

    void keep(std::size_t index, Picture picture) {
        {
            const std::scoped_lock lock(mutex_);
            if (asset_ != movie_->asset || !aim_) {
                return;
            }
            if (picture && movie_->pictureMemory == 0) {
                movie_->pictureMemory = picture->memory();
            }
            pictures_.try_emplace(index, std::move(picture));
            giveUp();
        }
        changed_();
    }

    bool isKept(std::size_t index) const {
        const std::scoped_lock lock(mutex_);
        return pictures_.contains(index);
    }

    /// Frees the least wanted pictures until the rest fits the memory. The caller holds the lock.
    void giveUp() {
        constexpr std::size_t mebibyte = 1024 * 1024;
        constexpr std::size_t restingMemory = 160 * mebibyte;
        constexpr std::size_t movingMemory = 288 * mebibyte;
        constexpr std::size_t usualPicture = 3 * mebibyte; // 1080p
        constexpr std::size_t most = 240;                  // of small pictures: enough for any hand
        const bool moves = current_.motion == ReelMotion::backward || current_.motion == ReelMotion::forward;
        const std::size_t memory = moves ? movingMemory : restingMemory;
        const std::size_t picture = movie_->pictureMemory > 0 ? movie_->pictureMemory : usualPicture;
        ReelPlan& plan = movie_->plan;
        plan.setCapacity(std::min(most, memory / picture));
        while (pictures_.size() > plan.capacity()) {
            const auto least = std::ranges::min_element(pictures_, [&](const auto& a, const auto& b) {
                return plan.givesUpFirst(a.first, b.first, current_);
            });
            pictures_.erase(least);
        }
    }

    const std::function<void()> changed_;
    mutable std::mutex mutex_;
    std::condition_variable_any wake_;
    std::shared_ptr<const Asset> asset_;
    std::vector<std::int64_t> syncTimes_;
    std::optional<ReelAim> aim_;
    std::uint64_t wishes_ = 0; ///< how often a caller has changed what is wanted
    bool settled_ = false;
    Pictures pictures_;

    // Of the thread alone.
    std::unique_ptr<OpenMovie> movie_;
    ReelAim current_;             ///< the aim that the run under way follows
    std::set<std::size_t> taken_; ///< what the run under way has given, kept or not
    Pictures passed_;             ///< those that may replace a missing one
    const ReelPlan::IsKept isKept_ = [this](std::size_t index) { return pictures_.contains(index); };
    std::jthread thread_;
};

PictureReel::PictureReel(std::function<void()> changed)
    : worker_(std::make_unique<Worker>(std::move(changed))) {}

PictureReel::~PictureReel() = default;

void PictureReel::open(std::shared_ptr<const Asset> asset, std::vector<std::int64_t> syncTimes) {
    worker_->open(std::move(asset), std::move(syncTimes));
}

void PictureReel::aim(const ReelAim& aim) {
    worker_->aim(aim);
}

void PictureReel::clear() {
    worker_->clear();
}

std::shared_ptr<const RawPicture> PictureReel::at(std::size_t index) const {
    return worker_->at(index);
}

bool PictureReel::isMissing(std::size_t index) const {
    return worker_->isMissing(index);
}

std::optional<std::size_t> PictureReel::nearest(std::size_t index) const {
    return worker_->nearest(index);
}

bool PictureReel::isSettled() const {
    return worker_->isSettled();
}

} // namespace zelvra::media
