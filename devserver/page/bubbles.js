// One message's content: text, link, picture, video, file, voice or card.

import { openFile, openOutside, track } from "./bridge.js";
import { card, thumbnail } from "./card.js";
import { changeIcon, icon, make, outsideLink } from "./dom.js";
import { MessageType, addressOf, inlinePictureOf, listOf, numberOf, pictureOf, textOf } from "./records.js";
import { durationText, sizeText, text } from "./texts.js";
import { showPicture } from "./viewer.js";

/** An address ends before a blank, a quote or wide punctuation, and before what ends a sentence. */
const addressInText = (() => {
  const never = "\\s<>\"'，。；！？、）】》」』”’";
  return new RegExp(`https?://[^${never}]*[^${never}.,;:!?)\\]]`, "g");
})();

function textBubble(content) {
  const bubble = make("div", "bubble", { "data-testid": "text" });
  let end = 0;
  for (const match of content.matchAll(addressInText)) {
    const url = addressOf({ url: match[0] }, "url");
    if (!url) continue;
    bubble.append(content.slice(end, match.index), outsideLink("", url, openOutside, match[0]));
    end = match.index + match[0].length;
  }
  bubble.append(content.slice(end));
  return bubble;
}

function linkBubble(body) {
  const url = addressOf(body, "linkUrl", "url", "customPageUrl");
  const title = textOf(body, "title", "content") || url;
  if (!url) return textBubble(title);
  const open = () => {
    track("card_click", { title, url });
    openOutside(url);
  };
  const picture = pictureOf(body, "imageUrl");
  return outsideLink("link-card", url, open,
    make("span", "link-title", {}, title),
    make("span", "link-description", {}, textOf(body, "link_description")),
    make("span", "link-host", {}, icon("link"), new URL(url).host),
    picture ? thumbnail(picture, title) : null);
}

/** A picture whose bytes this page does not have, after a reload. */
function absentPicture(name) {
  return make("div", "absent", { "data-testid": "image" }, icon("photo"), name);
}

/** The most that a picture takes of the conversation, in points. */
const [pictureWidth, pictureHeight] = [240, 300];

/** Shows the first of the sources that loads; the stored picture comes before the copy that only this page has. */
function imageBubble(body) {
  const name = textOf(body, "fileName", "name") || text("picture");
  const sources = [
    pictureOf(body, "mediaUrl", "url"), pictureOf(body, "imageUrl", "cardImg"), inlinePictureOf(body, "image"),
  ].filter(Boolean);
  if (!sources.length) return absentPicture(name);
  const image = make("img", "", { src: sources[0], alt: name, loading: "lazy" });
  const width = numberOf(body, "width");
  const height = numberOf(body, "height");
  if (width && height) {
    // Takes its place at once, so that nothing moves when the picture comes.
    image.style.aspectRatio = `${width} / ${height}`;
    image.style.width = `${Math.min(width, pictureWidth, (pictureHeight * width) / height)}px`;
  }
  const label = `${text("openPicture")}: ${name}`;
  const button = make("button", "picture", { type: "button", "data-testid": "image", "aria-label": label }, image);
  button.addEventListener("click", () => showPicture(image.src, name));
  image.addEventListener("error", () => {
    sources.shift();
    if (sources.length) image.src = sources[0];
    else button.replaceWith(absentPicture(name));
  });
  return button;
}

function videoBubble(body) {
  const source = addressOf(body, "mediaUrl", "url");
  if (!source) return fileBubble(body);
  const poster = pictureOf(body, "coverUrl");
  const preload = poster ? "none" : "metadata";
  const video = make("video", "", { src: source, controls: "", playsinline: "", preload });
  video.setAttribute("aria-label", textOf(body, "videoName", "fileName", "name") || text("video"));
  if (poster) video.poster = poster;
  const [width, height] = [numberOf(body, "width"), numberOf(body, "height")];
  video.style.aspectRatio = width && height ? `${width} / ${height}` : "16 / 9";
  return make("div", "film", { "data-testid": "video" }, video);
}

function fileBubble(body) {
  const name = textOf(body, "fileName", "name") || text("file");
  const url = addressOf(body, "mediaUrl", "url");
  const suffix = /\.([A-Za-z0-9]{1,4})$/.exec(name)?.[1] ?? "";
  const size = numberOf(body, "fileSize");
  const content = [
    make("span", "file-kind", { "aria-hidden": "true" }, suffix.toUpperCase()),
    make("span", "file-text", {},
      make("span", "file-name", {}, name),
      make("span", "file-size", {}, size ? sizeText(size) : "")),
  ];
  if (!url) return make("div", "file", { "data-testid": "file" }, ...content);
  const label = `${text("openFile")}: ${name}`;
  const button = make("button", "file", { type: "button", "data-testid": "file", "aria-label": label }, ...content);
  button.addEventListener("click", () => openFile(url));
  return button;
}

let playing = null;

function voiceBubble(body) {
  const source = addressOf(body, "mediaUrl", "url");
  const seconds = numberOf(body, "duration");
  const symbol = icon("play");
  const time = make("span", "voice-time", {}, durationText(seconds));
  const bars = make("span", "voice-bars", { "aria-hidden": "true" });
  const button = make("button", "voice", { type: "button", "data-testid": "voice" },
    make("span", "voice-button", {}, symbol), bars, time);
  button.style.setProperty("--seconds", String(seconds));
  const audio = source ? make("audio", "", { src: source, preload: "none" }) : null;

  const show = (isPlaying) => {
    button.classList.toggle("playing", isPlaying);
    changeIcon(symbol, isPlaying ? "pause" : "play");
    button.setAttribute("aria-label", `${text(isPlaying ? "pause" : "play")} ${durationText(seconds)}`);
  };
  const fail = () => {
    show(false);
    time.textContent = text("cannotPlay");
  };
  show(false);
  button.disabled = !audio;
  audio?.addEventListener("play", () => show(true));
  audio?.addEventListener("pause", () => show(false));
  audio?.addEventListener("error", fail);
  button.addEventListener("click", () => {
    if (!audio.paused) return audio.pause();
    playing?.pause();
    playing = audio;
    audio.play().catch(fail);
  });
  return button;
}

function typeOf(message) {
  const type = message.messageBody?.msgType ?? message.mType;
  if (Object.values(MessageType).includes(type)) return type;
  return listOf(message.messageBody, "customItems").length ? MessageType.card : MessageType.text;
}

/** The element of a message's body. `isWide`: it takes the width that there is. */
export function contentOf(message, onCommand) {
  const body = message.messageBody && typeof message.messageBody === "object" ? message.messageBody : {};
  switch (typeOf(message)) {
    case MessageType.image: return { element: imageBubble(body), isWide: false };
    case MessageType.voice: return { element: voiceBubble(body), isWide: false };
    case MessageType.video: return { element: videoBubble(body), isWide: false };
    case MessageType.file: return { element: fileBubble(body), isWide: false };
    case MessageType.link: return { element: linkBubble(body), isWide: true };
    case MessageType.card: return { element: card(body, onCommand), isWide: true };
    default: return { element: textBubble(textOf(body, "content", "title", "name") || "…"), isWide: false };
  }
}
