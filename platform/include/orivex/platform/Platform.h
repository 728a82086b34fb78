#pragma once

#include "orivex/Export.h"

namespace orivex {

class Animator;
class Application;
class AudioSession;
class Bundle;
class Camera;
class Device;
class DocumentInteraction;
class DocumentPicker;
class FileManager;
class HttpClient;
class ImageCodec;
class MainQueue;
class MediaProbe;
class PhotoLibrary;
class ProgressOverlay;
class RecordPermission;
class TypeRegistry;
class UserDefaults;
class WebEngineFactory;
class WebsiteDataStore;

/// What the component needs of a device. A backend fills it in and installs it once per process, before the first
/// screen is made; the ports must outlive every screen.
struct Platform {
  MainQueue& mainQueue;
  Application& application;
  WebEngineFactory& webEngines;
  WebsiteDataStore& websiteDataStore;
  Animator& animator;
  ProgressOverlay& progressOverlay;
  HttpClient& httpClient;
  Bundle& mainBundle;
  Bundle& componentBundle;
  UserDefaults& userDefaults;
  Device& device;
  FileManager& fileManager;
  TypeRegistry& typeRegistry;
  ImageCodec& imageCodec;
  MediaProbe& mediaProbe;
  DocumentPicker& documentPicker;
  DocumentInteraction& documentInteraction;
  PhotoLibrary& photoLibrary;
  Camera& camera;
  AudioSession& audioSession;
  RecordPermission& recordPermission;

  /// Makes `platform` the one in use. The caller keeps it alive; null takes it away again.
  ORIVEX_API static void install(const Platform* platform);

  ORIVEX_API static bool isInstalled();

  /// The one in use. Without one the process stops: the host must install a backend first.
  ORIVEX_API static const Platform& current();
};

}  // namespace orivex
