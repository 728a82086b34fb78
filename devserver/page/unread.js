// How many answers the visitor has not seen, for a host that shows it: those that came while no page was there, above
// the end of what is scrolled to, or behind another window.

import { post } from "./bridge.js";

let count = 0;

function change(next) {
  if (next === count) return;
  count = next;
  post("unreadCount", count);
}

export const addUnread = (more) => change(count + more);
export const clearUnread = () => change(0);
