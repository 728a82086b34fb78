import { afterFirstPaint, post, track } from "./bridge.js";

track("chat_open", { language: navigator.language });
afterFirstPaint(() => post("initLoaded"));
