#include "CameraScreen.h"

#include <algorithm>
#include <utility>

#include "../Sandbox.h"

#include "orivex/platform/base/Log.h"
#include "orivex/platform/base/Translation.h"

namespace orivex::gtk {
namespace {

constexpr double longestSearch = 10;  // seconds, after which what knows of the cameras is taken to be broken

constexpr double ringInterval = 1.0 / 30;  // seconds between two steps of the ring

constexpr int leastSide = 240;  // points of a picture, for a window that has no size yet

// The photo as large as it is shown; null when it cannot be read. Blocks.
GRef<GdkTexture> photoTexture(const std::string& path, Size area) {
  int width = 0;
  int height = 0;
  if (!gdk_pixbuf_get_file_info(path.c_str(), &width, &height)) return nullptr;
  const auto size = placedSize({static_cast<double>(width), static_cast<double>(height)}, area);
  const auto pixels = GRef<GdkPixbuf>::adopt(gdk_pixbuf_new_from_file_at_scale(
      path.c_str(), static_cast<int>(size.width), static_cast<int>(size.height), FALSE, nullptr));
  return pixels ? GRef<GdkTexture>::adopt(gdk_texture_new_for_pixbuf(pixels.get())) : nullptr;
}

std::string hintFor(const CameraOptions& options) {
  if (!options.allowRecordVideo) return tr("轻触拍照");
  return options.allowTakePhoto ? tr("轻触拍照，按住摄像") : tr("按住摄像");
}

}  // namespace

CameraScreen::CameraScreen(PipelineThreads threads, const HostWindow& window, const CameraOptions& options,
                           MayRecordSound mayRecordSound, Once<void(Result)> done)
    : threads_(threads),
      options_(options),
      mayRecordSound_(std::move(mayRecordSound)),
      done_(std::move(done)),
      view_(threads.main, window.window()->safeAreaInsets(), window.heldKeys(), hintFor(options), viewHandlers()),
      sheet_(
          window.overlay(), threads.main, view_.widget(), tr("相机"), [this] { closed(); }, Sheet::Extent::large) {
  view_.showOpening(false);
  orientation_ = std::make_unique<DeviceOrientation>([this] { turn(); });
  findSources();
}

CameraView::Handlers CameraScreen::viewHandlers() {
  return {.close = [this] { finish(CaptureCancelled{}); },
          .tapped = [this] { takePhoto(); },
          .held = [this] { beginVideo(); },
          .released = [this] { endVideo(); },
          .switchCamera = [this] { switchCamera(); },
          .retake = [this] { retake(); },
          .use = [this] { useCapture(); }};
}

// The devices are closed now, the widgets when the visitor sees them no more.
void CameraScreen::finish(Result result) {
  if (std::exchange(phase_, Phase::done) == Phase::done) return;
  result_ = std::move(result);
  recordingTicks_.reset();
  player_.reset();
  recorder_.reset();
  camera_.reset();
  portal_.reset();
  orientation_.reset();
  sheet_.close();
}

// After `finish`, or with the window.
void CameraScreen::closed() {
  finish(std::nullopt);
  std::move(done_)(std::move(result_));
}

void CameraScreen::findSources() {
  // Named sources are nobody's camera.
  const char* const named = g_getenv(cameraSourceVariable);
  if (runsInSandbox() && (!named || !*named)) return askPortal();
  const auto find = [] {
    prepareGStreamer();
    return findCameras();
  };
  threads_.main.asyncAfter(longestSearch, alive_.guard([this] {
    if (phase_ != Phase::opening || !sources_.empty()) return;
    log::warning("The search for cameras has no end");
    finish(CameraFailure::failed);
  }));
  threads_.run(find, alive_.guard([this](std::vector<CameraSource> sources) {
    sources_ = std::move(sources);
    if (phase_ != Phase::opening) return;
    sources_.empty() ? finish(CameraFailure::noCamera) : openCamera();
  }));
}

void CameraScreen::askPortal() {
  portal_ = std::make_unique<CameraPortal>([this](std::optional<CameraFailure> failure) {
    if (phase_ != Phase::opening) return;
    if (failure) return finish(*failure);
    // The desktop decides which of several; most that it offers face the visitor.
    sources_ = {{CameraFacing::front, CameraSource::Portal{}}};
    openCamera();
  });
}

void CameraScreen::openCamera() {
  phase_ = Phase::opening;
  view_.showOpening(sources_.size() > 1);
  if (paused_ || sources_.empty()) return;
  camera_.reset();  // the device may allow only one at a time
  const auto& source = sources_[current_];
  camera_ = std::make_unique<CameraPipeline>(
      threads_, source, options_.captureSize, screenArea(),
      CameraPipeline::Handlers{.show = [this](const GRef<GdkTexture>& frame) { frameShown(frame); },
                               // What was recorded up to here may not be whole.
                               .failed = [this](CameraFailure failure) { finish(failure); }});
  turn();
}

void CameraScreen::frameShown(const GRef<GdkTexture>& frame) {
  view_.picture().show(frame.get());
  // The full frames come another way, and a photo needs one.
  if (phase_ != Phase::opening || !camera_->frames()->newest()) return;
  phase_ = Phase::live;
  view_.showLive();
  if (options_.allowRecordVideo) ClipRecorder::warmUp(threads_, options_.videoExportType);
}

void CameraScreen::switchCamera() {
  if (phase_ != Phase::live) return;
  current_ = (current_ + 1) % sources_.size();
  openCamera();
}

// A video keeps the way up with which it began. Seen from the other side a turn goes the other way round.
void CameraScreen::turn() {
  if (!camera_ || phase_ == Phase::recording) return;
  const int degrees = orientation_->degrees();
  camera_->turn(sources_[current_].facing == CameraFacing::back ? degrees : (360 - degrees) % 360);
}

Size CameraScreen::screenArea() const {
  auto* const window = GTK_WIDGET(gtk_widget_get_root(view_.widget()));
  if (!window) return {leastSide, leastSide};
  const int scale = gtk_widget_get_scale_factor(window);
  return {static_cast<double>(std::max(gtk_widget_get_width(window), leastSide) * scale),
          static_cast<double>(std::max(gtk_widget_get_height(window), leastSide) * scale)};
}

void CameraScreen::pause() {
  paused_ = true;
  endVideo();
  camera_.reset();
  player_.reset();
  if (phase_ == Phase::live) openCamera();
}

void CameraScreen::resume() {
  paused_ = false;
  if (phase_ == Phase::opening) openCamera();
  if (phase_ == Phase::reviewing) review();
}

void CameraScreen::takePhoto() {
  if (phase_ != Phase::live) return;
  if (!options_.allowTakePhoto) {
    view_.showNotice(tr("请按住按钮摄像"));
    return;
  }
  phase_ = Phase::working;
  view_.showWorking();
  using Photo = std::variant<std::shared_ptr<CaptureFile>, Failure>;
  threads_.run([frame = camera_->frames()->newest()] { return CaptureFile::makePhoto(frame); },
               alive_.guard([this](const Photo& made) {
                 if (phase_ != Phase::working) return;
                 if (const auto* const photo = std::get_if<0>(&made)) return captured(*photo);
                 log::warning("camera: no photo: " + std::get<Failure>(made).description);
                 openCamera();
                 view_.showNotice(tr("拍照失败，请再试一次"));
               }));
  camera_.reset();
}

void CameraScreen::beginVideo() {
  if (phase_ != Phase::live) return;
  if (!options_.allowRecordVideo) {
    view_.showNotice(tr("轻触按钮即可拍照"));
    return;
  }
  const auto withSound = mayRecordSound_();
  if (!withSound) return;
  phase_ = Phase::recording;
  view_.showRecording(0, options_.maxRecordDuration);
  recorder_ = std::make_unique<ClipRecorder>(
      threads_, camera_->frames(), options_, *withSound,
      ClipRecorder::Handlers{.began = [this] { videoBegan(); },
                             .finished = [this](std::shared_ptr<CaptureFile> video) { captured(std::move(video)); },
                             .failed = [this] { dropVideo(tr("录制失败，请再试一次")); }});
}

void CameraScreen::videoBegan() {
  recordingBegan_ = threads_.main.now();
  recordingTicks_ = threads_.main.repeat(ringInterval, [this] { tickRecording(); });
}

double CameraScreen::recordedSeconds() const {
  return recordingTicks_ ? threads_.main.now() - recordingBegan_ : 0;
}

void CameraScreen::tickRecording() {
  const auto seconds = recordedSeconds();
  view_.showRecording(std::min(seconds, options_.maxRecordDuration), options_.maxRecordDuration);
  if (seconds >= options_.maxRecordDuration) endVideo();
}

void CameraScreen::endVideo() {
  if (phase_ != Phase::recording) return;
  if (recordedSeconds() < options_.minRecordDuration) {
    recorder_.reset();  // at once: its word that it began may be on its way
    dropVideo(tr("录制时间太短"));
    return;
  }
  recordingTicks_.reset();
  phase_ = Phase::working;
  recorder_->finish();
  camera_.reset();
  view_.showWorking();
}

// Called by the recorder too, which must not go while it calls.
void CameraScreen::dropVideo(const std::string& notice) {
  recordingTicks_.reset();
  threads_.main.async([recorder = std::move(recorder_)] {});
  if (camera_) {
    phase_ = Phase::live;
    view_.showLive();
  } else {
    openCamera();
  }
  view_.showNotice(notice);
}

void CameraScreen::captured(std::shared_ptr<CaptureFile> capture) {
  capture_ = std::move(capture);
  phase_ = Phase::reviewing;
  view_.showReview();
  threads_.main.async([recorder = std::move(recorder_)] {});
  review();
}

// The file itself is shown, not what the camera showed: what the visitor approves is what is sent.
void CameraScreen::review() {
  if (paused_) return;
  const auto show = alive_.guard([this](const GRef<GdkTexture>& picture) { view_.picture().show(picture.get()); });
  if (capture_->type() == MediaType::video) {
    player_ = std::make_unique<ClipPlayer>(
        threads_, capture_->path(), screenArea(),
        ClipPlayer::Handlers{.show = show, .ended = [this] { player_->restart(); }, .failed = [] {}});
  } else {
    threads_.run([file = capture_, area = screenArea()] { return photoTexture(file->path(), area); }, show);
  }
}

void CameraScreen::retake() {
  if (phase_ != Phase::reviewing) return;
  player_.reset();
  capture_.reset();
  openCamera();
}

void CameraScreen::useCapture() {
  if (phase_ != Phase::reviewing) return;
  finish(capture_->release());
}

}  // namespace orivex::gtk
