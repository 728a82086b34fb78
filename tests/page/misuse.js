/// <reference path="../../page/orivex-page.d.ts" />

// What the component would drop without a word is an error to the compiler, and so is what an answer may lack.

const native = window.webkit?.messageHandlers;
const deviceId = "d";

// @ts-expect-error A plain browser and frames have no handlers.
window.webkit.messageHandlers.goBack.postMessage(null);
// @ts-expect-error
native?.unknown.postMessage(null);
// @ts-expect-error WebKit wants an argument.
native?.goBack.postMessage();
// @ts-expect-error
native?.openUrl.postMessage({ url: "https://example.com/" });
// @ts-expect-error
native?.openFile.postMessage(1);
// @ts-expect-error
native?.trackEvent.postMessage({ name: "x" });
// @ts-expect-error
native?.trackEvent.postMessage({ name: "x", attributes: { count: 1 } });
// @ts-expect-error
native?.openCamera.postMessage({});
// @ts-expect-error
native?.openPhotoLibraryPicker.postMessage({ deviceId, fileSize: "1" });
// @ts-expect-error
native?.openDocumentPicker.postMessage({ deviceId, mimeTypes: "image/*" });
// @ts-expect-error
native?.recording.postMessage({ deviceId });
// @ts-expect-error
native?.recording.postMessage({ deviceId, action: "pause" });
// @ts-expect-error An older application does not have it.
native?.unreadCount.postMessage(1);
// @ts-expect-error
native?.message?.postMessage({ messageBody: { customItems: [{ customCardAmount: 1 }] } });
// @ts-expect-error
window.handleSelectedFiles = (file) => file.type;
window.handleSelectedFiles = ([file]) => {
  // @ts-expect-error A photo has no address.
  file.url.length;
  // @ts-expect-error
  file.type === "Photo";
};
// @ts-expect-error Absent in a plain browser.
window.extraParams.hh;
