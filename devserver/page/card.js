// Cards: an order, a product, a template, whatever fields of a message body are there.

import { openOutside, track } from "./bridge.js";
import { icon, make, outsideLink } from "./dom.js";
import { addressOf, inlinePictureOf, linkMenu, listOf, pictureOf, textOf } from "./records.js";

/** A colour that stays the same for the same name. */
function hueOf(name) {
  let hue = 250;
  for (const character of name) hue = (hue * 31 + character.codePointAt(0)) % 360;
  return hue;
}

/** A picture, or a drawn box where there is none or it does not load. */
export function thumbnail(source, name) {
  const frame = make("span", "thumbnail", { "aria-hidden": "true" });
  frame.style.setProperty("--hue", String(hueOf(name)));
  frame.append(icon("box"));
  if (source) {
    const image = make("img", "", { src: source, alt: "" });
    image.addEventListener("load", () => frame.replaceChildren(image));
  }
  return frame;
}

function open(url, name) {
  track("card_click", { title: name, url });
  openOutside(url);
}

function textLine(tag, className, content) {
  return content ? make(tag, className, {}, content) : null;
}

function fieldList(record) {
  const fields = listOf(record, "customFields").filter((field) => textOf(field, "key") || textOf(field, "value"));
  if (!fields.length) return null;
  const rows = fields.flatMap((field) => [
    make("dt", "", {}, textOf(field, "key")),
    make("dd", "", {}, textOf(field, "value")),
  ]);
  return make("dl", "fields", {}, ...rows);
}

function menuRow(record, onCommand) {
  const menus = listOf(record, "customMenus").filter((menu) => textOf(menu, "title"));
  if (!menus.length) return null;
  const buttons = menus.map((menu) => {
    const title = textOf(menu, "title");
    const command = textOf(menu, "command");
    const attributes = { type: "button", "data-testid": "card-menu", "data-command": command };
    const button = make("button", "chip", attributes, title);
    button.addEventListener("click", () => {
      track("menu_click", { title, command });
      const url = menu.type === linkMenu ? addressOf(menu, "command") : "";
      if (url) openOutside(url);
      else onCommand(title, command);
    });
    return button;
  });
  return make("div", "menus", {}, ...buttons);
}

function price(item) {
  const amount = textOf(item, "customCardAmount");
  if (!amount) return null;
  const symbol = textOf(item, "customCardAmountSymbol");
  const original = textOf(item, "customCardOriginalAmount");
  return make("p", "price", {},
    textLine("span", "price-label", textOf(item, "customCardAmountName")),
    make("span", "", {}, symbol + amount),
    original ? make("s", "", {}, symbol + original) : null);
}

function itemRow(item, onCommand) {
  const name = textOf(item, "customCardName");
  const content = [
    thumbnail(pictureOf(item, "customCardThumbnail"), name),
    make("div", "item-text", {},
      textLine("p", "item-name", name),
      textLine("p", "item-description", textOf(item, "customCardDesc")),
      price(item),
      fieldList(item)),
  ];
  const url = addressOf(item, "customCardLink");
  const row = url ? outsideLink("item", url, () => open(url, name), ...content) : make("div", "item", {}, ...content);
  row.dataset.testid = "card-item";
  return make("li", "", {}, row, menuRow(item, onCommand));
}

/** What a body would be called in a sentence; "" when it holds nothing to show. */
export function titleOf(body) {
  const own = ["title", "titleWord", "cardGuide", "name", "fileName", "videoName", "content", "cardDesc", "link_description"];
  return textOf(body, ...own) || textOf(listOf(body, "customItems")[0], "customCardName")
    || addressOf(body, "linkUrl", "cardLink", "url");
}

/** A card of everything in the body that can be shown. `onCommand(title, command)` sends a menu's command. */
export function card(body, onCommand) {
  const title = titleOf(body);
  const guide = textOf(body, "cardGuide");
  const description = textOf(body, "cardDesc", "link_description", "content");
  const picture = pictureOf(body, "cardImg", "imageUrl", "coverUrl") || inlinePictureOf(body, "image");
  const items = listOf(body, "customItems").map((item) => itemRow(item, onCommand));
  const url = addressOf(body, "cardLink", "linkUrl", "url");

  const element = make("article", "card", { "data-testid": "card", "aria-label": title });
  if (picture) {
    const image = make("img", "card-picture", { src: picture, alt: "" });
    image.addEventListener("error", () => image.remove());
    element.append(image);
  }
  element.append(make("div", "card-head", {},
    guide !== title ? textLine("p", "card-guide", guide) : null,
    textLine("h3", "card-title", title),
    description !== title ? textLine("p", "card-description", description) : null));
  const rest = [fieldList(body), items.length ? make("ul", "items", {}, ...items) : null, menuRow(body, onCommand)];
  element.append(...rest.filter(Boolean));
  if (url) {
    const label = textOf(body, "button") || new URL(url).host;
    const link = outsideLink("card-link", url, () => open(url, title), label, icon("chevron"));
    link.dataset.testid = "card-link";
    element.append(link);
  }
  return element;
}
