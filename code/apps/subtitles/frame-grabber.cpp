// SPDX-License-Identifier: LGPL-2.1-or-later
//
// The pipeline is a player's, with a sink that keeps what it gets: film and subtitle run through
// the same elements, so that what is seen here is what is seen there.

#include "frame-grabber.h"

#include <limits>

#include <gst/gst.h>

#include "exit-status.h"
#include "time-text.h"

namespace tool {

namespace {

constexpr int plainWidth = 1280;
constexpr int plainHeight = 720;
constexpr unsigned plainColor = 0xFF404040;  // alpha, red, green, blue

bool hasElement(const char* name) {
    GstElementFactory* const factory = gst_element_factory_find(name);
    if (factory == nullptr) {
        return false;
    }
    gst_object_unref(factory);
    return true;
}

/// ASS scripts place their text themselves; where nothing can do that, the text is shown all the
/// same.
bool wantsScriptRenderer(const LoadedTrack& track) {
    return track.reference.mimeType == "application/x-ass" && hasElement("assrender");
}

std::string backgroundPart(const std::string& film) {
    if (!film.empty()) {
        return "uridecodebin name=film caps=video/x-raw expose-all-streams=false";
    }
    return "videotestsrc name=plain pattern=solid-color ! video/x-raw,framerate=25/1,width=" +
           std::to_string(plainWidth) + ",height=" + std::to_string(plainHeight);
}

std::string overlayPart(const LoadedTrack& track) {
    return wantsScriptRenderer(track) ? "assrender name=overlay wait-text=true"
                                      : "textoverlay name=overlay font-desc=\"Sans 18\"";
}

std::string scaledTo(int width) {
    return width == 0 ? "" : "videoscale ! video/x-raw,width=" + std::to_string(width) + " ! ";
}

std::string description(const LoadedTrack& track, const FrameGrabber::Options& options) {
    // Pixels become square ahead of the text, which would come out distorted otherwise.
    return backgroundPart(options.film) +
           " ! videoconvert ! videoscale ! video/x-raw,pixel-aspect-ratio=1/1"
           " ! videoconvert ! overlay.video_sink "
           "subtitlesrc name=subtitles ! overlay.text_sink " +
           overlayPart(track) + " ! videoconvert ! " +
           (options.time ? "timeoverlay shaded-background=true ! " : "") + scaledTo(options.width) +
           "videoconvert ! video/x-raw,format=RGB,pixel-aspect-ratio=1/1"
           " ! fakesink name=sink sync=false";
}

void setFilm(Pipeline& pipeline, const std::string& film) {
    if (film.empty()) {
        pipeline.set("plain", "foreground-color", plainColor);
        return;
    }
    GError* error = nullptr;
    gchar* const uri = gst_filename_to_uri(film.c_str(), &error);
    if (uri == nullptr) {
        const std::string words = error->message;
        g_error_free(error);
        throw Failure(film + ": " + words);
    }
    pipeline.set("film", "uri", uri);
    g_free(uri);
}

void setRate(Pipeline& pipeline, const FrameRate& rate) {
    constexpr std::uint64_t most = std::numeric_limits<gint>::max();
    auto numerator = static_cast<gint>(rate.numerator);
    auto denominator = static_cast<gint>(rate.denominator);
    if (rate.numerator > most || rate.denominator > most) {
        gst_util_double_to_fraction(
            static_cast<double>(rate.numerator) / static_cast<double>(rate.denominator), &numerator,
            &denominator);
    }
    pipeline.set("subtitles", "video-fps", numerator, denominator);
}

Picture toPicture(GstSample* sample) {
    const GstStructure* const caps = gst_caps_get_structure(gst_sample_get_caps(sample), 0);
    Picture picture;
    gst_structure_get_int(caps, "width", &picture.width);
    gst_structure_get_int(caps, "height", &picture.height);
    picture.pixels.resize(stride(picture.width) * static_cast<std::size_t>(picture.height));
    const std::size_t size = gst_buffer_extract(gst_sample_get_buffer(sample), 0,
                                                picture.pixels.data(), picture.pixels.size());
    if (size != picture.pixels.size()) {
        throw Failure("a frame of an unknown layout");
    }
    return picture;
}

}  // namespace

FrameGrabber::FrameGrabber(const LoadedTrack& track, const Options& options)
    : pipeline(description(track, options)) {
    setFilm(pipeline, options.film);
    pipeline.set("subtitles", "reference", track.reference.serialize().c_str(), "subtitle-encoding",
                 track.encoding.c_str());
    if (track.cues.frameRate()) {
        setRate(pipeline, *track.cues.frameRate());
    }
    overlayInput.watch(pipeline.find("overlay").get());
    pipeline.pause();
    if (!options.film.empty()) {
        endOfFilm = pipeline.duration();
    }
}

Picture FrameGrabber::frameAt(std::uint64_t time) {
    if (endOfFilm && time >= *endOfFilm) {
        throw Failure("the film ends at " + millisecondText(*endOfFilm));
    }
    overlayInput.holdFrames();
    pipeline.seek(time);
    const SamplePtr sample = pipeline.lastSample("sink");
    if (!sample) {
        throw Failure("the film has no frame at " + millisecondText(time));
    }
    return toPicture(sample.get());
}

}  // namespace tool
