// SPDX-License-Identifier: GPL-3.0-or-later

#include "tests/exports/GStreamerMovie.h"

#include <cmath>
#include <gst/app/gstappsink.h>
#include <gst/gst.h>
#include <stdexcept>

namespace zelvra::test {
namespace {

constexpr GstClockTime patience = 20 * GST_SECOND;

template <auto release>
struct Releaser {
    template <class T>
    void operator()(T* object) const {
        release(object);
    }
};

using Element = std::unique_ptr<GstElement, Releaser<gst_object_unref>>;
using Sample = std::unique_ptr<GstSample, Releaser<gst_sample_unref>>;
using Caps = std::unique_ptr<GstCaps, Releaser<gst_caps_unref>>;
using Message = std::unique_ptr<GstMessage, Releaser<gst_message_unref>>;
using Bus = std::unique_ptr<GstBus, Releaser<gst_object_unref>>;
using Text = std::unique_ptr<gchar, Releaser<g_free>>;

/// A new element. The caller shares ownership with the pipeline that it joins.
Element makeElement(const char* factory) {
    GstElement* element = gst_element_factory_make(factory, nullptr);
    if (!element) {
        throw std::runtime_error(std::string("GStreamer has no element ") + factory);
    }
    return Element(GST_ELEMENT(gst_object_ref_sink(element)));
}

PictureReading read(GstSample* sample) {
    const GstStructure* format = gst_caps_get_structure(gst_sample_get_caps(sample), 0);
    int width = 0;
    int height = 0;
    gst_structure_get_int(format, "width", &width);
    gst_structure_get_int(format, "height", &height);
    GstBuffer* buffer = gst_sample_get_buffer(sample);
    GstMapInfo map;
    if (!gst_buffer_map(buffer, &map, GST_MAP_READ)) {
        throw std::runtime_error("GStreamer's picture cannot be read");
    }
    const std::size_t stride = map.size / static_cast<std::size_t>(height); // rows are padded to 4 bytes
    const PictureReading reading = readPicture(map.data, width, height, stride);
    gst_buffer_unmap(buffer, &map);
    return reading;
}

} // namespace

struct GStreamerMovie::Pipeline {
    Element player;
    Element pictures;

    /// Waits until a change of state or a seek has put a picture into the sink.
    void settle() const {
        const Bus bus(gst_element_get_bus(player.get()));
        const Message message(gst_bus_timed_pop_filtered(
            bus.get(), patience, static_cast<GstMessageType>(GST_MESSAGE_ASYNC_DONE | GST_MESSAGE_ERROR)));
        if (!message) {
            throw std::runtime_error("GStreamer shows no picture");
        }
        if (GST_MESSAGE_TYPE(message.get()) == GST_MESSAGE_ERROR) {
            GError* error = nullptr;
            gst_message_parse_error(message.get(), &error, nullptr);
            const std::string said = error->message;
            g_error_free(error);
            throw std::runtime_error("GStreamer: " + said);
        }
    }
};

GStreamerMovie::GStreamerMovie(const std::filesystem::path& movie) : pipeline_(new Pipeline) {
    gst_init(nullptr, nullptr);
    pipeline_->player = makeElement("playbin");
    pipeline_->pictures = makeElement("appsink");
    const Element silence = makeElement("fakesink");
    const Caps grey(gst_caps_from_string("video/x-raw,format=GRAY8"));
    gst_app_sink_set_caps(GST_APP_SINK(pipeline_->pictures.get()), grey.get());
    const Text uri(gst_filename_to_uri(movie.c_str(), nullptr));
    g_object_set(pipeline_->player.get(), "uri", uri.get(), "video-sink", pipeline_->pictures.get(),
                 "audio-sink", silence.get(), nullptr);
    gst_element_set_state(pipeline_->player.get(), GST_STATE_PAUSED);
    pipeline_->settle();
}

GStreamerMovie::~GStreamerMovie() {
    gst_element_set_state(pipeline_->player.get(), GST_STATE_NULL);
}

PictureReading GStreamerMovie::seek(double seconds) {
    if (!gst_element_seek_simple(pipeline_->player.get(), GST_FORMAT_TIME,
                                 static_cast<GstSeekFlags>(GST_SEEK_FLAG_FLUSH | GST_SEEK_FLAG_ACCURATE),
                                 std::llround(seconds * GST_SECOND))) {
        throw std::runtime_error("GStreamer refuses to seek");
    }
    pipeline_->settle();
    const Sample sample(gst_app_sink_try_pull_preroll(GST_APP_SINK(pipeline_->pictures.get()), patience));
    if (!sample) {
        throw std::runtime_error("GStreamer shows no picture at " + std::to_string(seconds) + " s");
    }
    return read(sample.get());
}

} // namespace zelvra::test
