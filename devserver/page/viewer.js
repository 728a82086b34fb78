// A picture over the whole page; Escape, the button or a tap beside it closes it.

import { byId } from "./dom.js";

const dialog = byId("viewer");

export function showPicture(source, name) {
  const image = byId("viewer-image");
  image.src = source;
  image.alt = name;
  dialog.showModal();
}

byId("viewer-close").addEventListener("click", () => dialog.close());
dialog.addEventListener("click", (event) => {
  if (event.target === dialog) dialog.close();
});
