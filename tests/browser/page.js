// What a test asks of the page that it has opened. Each function gives plain values; a list of what is wrong is empty when all
// is well.
(() => {
  const root = document.documentElement;
  const all = new CSSStyleSheet(); // what lies far below the window counts as well
  all.replaceSync("* { content-visibility: visible !important }");
  document.adoptedStyleSheets = [all];
  const shown = (element) => element.checkVisibility({ opacityProperty: true, visibilityProperty: true });
  const name = (element) => `${element.localName}.${element.className} "${element.textContent.trim().slice(0, 40)}"`;
  const texts = function* () {
    const walker = document.createTreeWalker(document.body, NodeFilter.SHOW_TEXT);
    for (let node = walker.nextNode(); node; node = walker.nextNode())
      if (node.data.trim() && shown(node.parentElement)) yield node;
  };

  // Four numbers of any colour that the style sheet knows how to write.
  const canvas = new OffscreenCanvas(1, 1).getContext("2d", { willReadFrequently: true });
  const colours = new Map();
  const rgba = (text) => {
    if (!colours.has(text)) {
      canvas.clearRect(0, 0, 1, 1);
      canvas.fillStyle = text;
      canvas.fillRect(0, 0, 1, 1);
      const [red, green, blue, alpha] = canvas.getImageData(0, 0, 1, 1).data;
      colours.set(text, [red, green, blue, alpha / 255]);
    }
    return colours.get(text);
  };
  const over = ([r, g, b, a], [r2, g2, b2]) => [r * a + r2 * (1 - a), g * a + g2 * (1 - a), b * a + b2 * (1 - a), 1];
  const luminance = ([r, g, b]) => {
    const linear = [r, g, b].map((c) => (c / 255 <= 0.04045 ? c / 255 / 12.92 : ((c / 255 + 0.055) / 1.055) ** 2.4));
    return 0.2126 * linear[0] + 0.7152 * linear[1] + 0.0722 * linear[2];
  };
  const contrast = (one, other) => {
    const [low, high] = [luminance(one), luminance(other)].sort((a, b) => a - b);
    return (high + 0.05) / (low + 0.05);
  };
  const canvasOfPage = () => (matchMedia("(prefers-color-scheme: dark)").matches ? [18, 18, 18, 1] : [255, 255, 255, 1]);

  // What lies behind an element's text: the backgrounds of what it stands in.
  const behind = (element) => {
    const layers = [];
    for (let at = element; at; at = at.parentElement) layers.push(rgba(getComputedStyle(at).backgroundColor));
    const solid = layers.findIndex((colour) => colour[3] === 1);
    const from = solid < 0 ? layers.length : solid;
    return layers.slice(0, from).reduceRight((below, layer) => over(layer, below), layers[solid] ?? canvasOfPage());
  };

  globalThis.page = {
    text: () => document.body.innerText,

    // Nothing may stand out of the window, unless it lies in a box that scrolls and that the keyboard reaches.
    wide: () => {
      const width = root.clientWidth;
      const wrong = root.scrollWidth > width ? [`the page is ${root.scrollWidth} wide in a window of ${width}`] : [];
      const scrolls = (element) => ["auto", "scroll"].includes(getComputedStyle(element).overflowX);
      const boxes = [...document.body.querySelectorAll("*")].filter((element) => scrolls(element));
      for (const box of boxes)
        if (box.scrollWidth > box.clientWidth + 1 && box.tabIndex < 0) wrong.push(`no key scrolls ${name(box)}`);
      const inside = new Set(boxes.flatMap((box) => [...box.querySelectorAll("*")]));
      for (const element of document.body.querySelectorAll("*")) {
        if (inside.has(element) || !shown(element)) continue;
        const { left, right, width: own } = element.getBoundingClientRect();
        if (own > 1 && (right > width + 0.5 || left < -0.5)) wrong.push(`${name(element)} goes from ${left} to ${right}`);
        const { overflowX } = getComputedStyle(element);
        if (own > 1 && ["hidden", "clip"].includes(overflowX) && element.scrollWidth > element.clientWidth + 1)
          wrong.push(`cut off: ${name(element)}`);
      }
      return wrong.slice(0, 5);
    },

    // The texts whose colour is too near to what lies behind it, each pair of colours once.
    faint: () => {
      const seen = new Map();
      for (const node of texts()) {
        const element = node.parentElement;
        const style = getComputedStyle(element);
        let opacity = 1;
        for (let at = element; at; at = at.parentElement) opacity *= Number(getComputedStyle(at).opacity);
        const background = behind(element);
        const [r, g, b, a] = rgba(style.color);
        const ratio = contrast(over([r, g, b, a * opacity], background), background);
        if (ratio < 4.5) seen.set(`${[r, g, b]} on ${background}`, `${ratio.toFixed(2)} ${name(element)}`);
      }
      return [...seen].map((pair) => pair.join(": "));
    },

    // Each field of the sheet: its name and its bubbles, each with its label, whether it is dark and whether it is heavy: a
    // filled one differs in its colour and in its lines.
    sheet: () =>
      [...document.querySelectorAll("#sheet .field")].map((field) => [
        field.querySelector(":scope > .name")?.innerText ?? "",
        [...field.querySelectorAll(".bubbles > *")].map((bubble) => {
          const style = getComputedStyle(bubble);
          const colour = rgba(style.backgroundColor);
          const heavy = Number(style.fontWeight) >= 600 && parseFloat(style.borderTopWidth) >= 2;
          const paper = behind(bubble.parentElement);
          return [bubble.innerText, contrast(over(colour, paper), paper) >= 4.5, heavy];
        }),
      ]),

    keys: () =>
      [...document.querySelectorAll("section.key")].map((key) => [
        key.querySelector("h2").innerText,
        [...key.querySelectorAll("tr[data-field]")].map((row) => [
          Number(row.dataset.field),
          row.cells[0].innerText,
          row.cells[1].innerText,
        ]),
      ]),

    // When what is on the page has been painted.
    painted: () => new Promise((done) => requestAnimationFrame(() => requestAnimationFrame(done))),
  };
})();
