// Making elements. Text always goes in as text: nothing that a message holds is ever read as markup.

/** The element of a fixed identifier. */
export const byId = (id) => document.getElementById(id);

/** An element with a class, attributes and children; a child that is null is left out, a string becomes text. */
export function make(tag, className = "", attributes = {}, ...children) {
  const element = document.createElement(tag);
  if (className) element.className = className;
  for (const [name, value] of Object.entries(attributes)) element.setAttribute(name, value);
  element.append(...children.filter((child) => child !== null));
  return element;
}

/** One of the icons drawn in chat.html. */
export function icon(name) {
  const namespace = "http://www.w3.org/2000/svg";
  const svg = document.createElementNS(namespace, "svg");
  const use = document.createElementNS(namespace, "use");
  use.setAttribute("href", `#icon-${name}`);
  svg.setAttribute("aria-hidden", "true");
  svg.append(use);
  return svg;
}

/** Shows another of those icons. */
export function changeIcon(svg, name) {
  svg.querySelector("use").setAttribute("href", `#icon-${name}`);
}

/** A link that opens outside the page. */
export function outsideLink(className, url, onOpen, ...children) {
  const link = make("a", className, { href: url, "data-testid": "link" }, ...children);
  link.addEventListener("click", (event) => {
    event.preventDefault();
    onOpen(url);
  });
  return link;
}
