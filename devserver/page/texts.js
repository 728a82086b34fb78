// What the page says, in Chinese and English.

import { isEnglish, locale } from "./environment.js";

const texts = {
  title: ["在线客服", "Support"],
  back: ["返回", "Back"],
  conversation: ["对话", "Conversation"],
  messages: ["消息", "Messages"],
  connecting: ["连接中…", "Connecting…"],
  reconnecting: ["连接已断开，正在重连…", "Connection lost. Reconnecting…"],
  typing: ["对方正在输入…", "Typing…"],
  browserNote: [
    "浏览器预览：拍照、相册、文件与语音在应用内可用",
    "Browser preview: camera, photos, files and voice work inside the app",
  ],
  placeholder: ["请输入您的问题", "Write a message"],
  send: ["发送", "Send"],
  tools: ["更多方式", "More ways to answer"],
  voice: ["语音输入", "Voice message"],
  keyboard: ["键盘输入", "Keyboard"],
  photo: ["相册", "Photo library"],
  camera: ["拍照", "Camera"],
  document: ["文件", "File"],
  talk: ["按住 说话", "Hold to talk"],
  talking: ["松开 发送，上滑取消", "Release to send, slide up to cancel"],
  cancelling: ["松开 取消发送", "Release to cancel"],
  toLatest: ["新消息", "New messages"],
  quickReplies: ["快捷回复", "Quick replies"],
  me: ["我", "You"],
  sending: ["发送中…", "Sending…"],
  waiting: ["等待网络，恢复后自动发送", "Waiting for the network"],
  failed: ["发送失败", "Not sent"],
  retry: ["重试", "Try again"],
  tooLarge: ["文件过大", "The file is too large"],
  uploading: ["上传进度", "Upload"],
  arrived: ["已送达", "Delivered"],
  picture: ["图片", "Picture"],
  video: ["视频", "Video"],
  openPicture: ["查看大图", "View picture"],
  close: ["关闭", "Close"],
  play: ["播放语音", "Play voice message"],
  pause: ["暂停", "Pause"],
  cannotPlay: ["无法播放", "Cannot play"],
  file: ["文件", "File"],
  openFile: ["打开文件", "Open file"],
  topic: ["您正在咨询", "You are asking about"],
  topicSend: ["发送给客服", "Send to support"],
  today: ["今天", "Today"],
  yesterday: ["昨天", "Yesterday"],
};

/** The text of a key in the page's language. */
export function text(key) {
  return texts[key][isEnglish ? 1 : 0];
}

const clock = new Intl.DateTimeFormat(locale, { hour: "2-digit", minute: "2-digit", hour12: false });
const day = new Intl.DateTimeFormat(locale, { month: "long", day: "numeric" });

/** When a group of messages was written, such as "今天 10:24". */
export function timeText(date) {
  const midnight = new Date().setHours(0, 0, 0, 0);
  const daysAgo = Math.round((midnight - new Date(date).setHours(0, 0, 0, 0)) / 86_400_000);
  const name = daysAgo === 0 ? text("today") : daysAgo === 1 ? text("yesterday") : day.format(date);
  return `${name} ${clock.format(date)}`;
}

/** A number of bytes for a person. */
export function sizeText(bytes) {
  if (bytes < 1024) return `${bytes} B`;
  if (bytes < 1024 * 1024) return `${(bytes / 1024).toFixed(bytes < 10_240 ? 1 : 0)} KB`;
  return `${(bytes / 1024 / 1024).toFixed(1)} MB`;
}

/** A duration as 5″ or 1′05″. */
export function durationText(seconds) {
  const whole = Math.max(1, Math.round(seconds));
  if (whole < 60) return `${whole}″`;
  return `${Math.floor(whole / 60)}′${String(whole % 60).padStart(2, "0")}″`;
}
