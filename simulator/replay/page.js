"use strict";
(() => {
  const longestPause = 1500; // milliseconds: longer times in which nothing happens are cut
  const svgNames = "http://www.w3.org/2000/svg";
  const find = (id) => document.getElementById(id);
  const steps = Array.from(find("steps").children);
  const end = Number(find("timeline").dataset.end);
  const slider = find("slider");
  let current = 0;
  let timer = null;

  const timeOf = (index) => Number(steps[index].dataset.at);
  const wordsOf = (index) => steps[index].querySelector(".what").textContent;

  // Puts what is seen after a step into a picture.
  function draw(picture, index) {
    picture.replaceChildren(...steps[index].dataset.shows.split(" ").map((name) => {
      const use = document.createElementNS(svgNames, "use");
      use.setAttribute("href", "#" + name);
      return use;
    }));
  }

  function show(index) {
    current = Math.max(0, Math.min(index, steps.length - 1));
    draw(find("screen"), current);
    find("now").textContent =
      `Step ${current + 1} of ${steps.length}, ${steps[current].dataset.at} s: ${wordsOf(current)}`;
    slider.value = current;
    slider.setAttribute("aria-valuetext", find("now").textContent);
    find("cursor").style.left = `${100 * Math.min(timeOf(current) / end, 1)}%`;
    steps.forEach((step, at) => {
      const button = step.firstElementChild;
      if (at === current) button.setAttribute("aria-current", "step");
      else button.removeAttribute("aria-current");
    });
    keepInSight(steps[current]);
    find("first").disabled = find("back").disabled = current === 0;
    find("last").disabled = find("next").disabled = current === steps.length - 1;
  }

  // Scrolls the list alone, never the page.
  function keepInSight(step) {
    const list = find("steps");
    const above = step.offsetTop - list.offsetTop - list.scrollTop;
    const below = above + step.offsetHeight - list.clientHeight;
    if (above < 0) list.scrollTop += above;
    else if (below > 0) list.scrollTop += below;
  }

  function pause() {
    clearTimeout(timer);
    timer = null;
    find("play").textContent = "▶ Play";
  }

  function playOn() {
    if (current === steps.length - 1) return pause();
    const wait = Math.min((timeOf(current + 1) - timeOf(current)) * 1000, longestPause);
    timer = setTimeout(() => {
      show(current + 1);
      playOn();
    }, Math.max(wait, 40) / Number(find("speed").value));
  }

  function playOrPause() {
    if (timer !== null) return pause();
    if (current === steps.length - 1) show(0);
    find("play").textContent = "❚❚ Pause";
    playOn();
  }

  function goTo(index) {
    pause();
    show(index);
  }

  // All steps as pictures, one after the other.
  function showAll(wanted) {
    const pictures = find("pictures");
    find("all").setAttribute("aria-pressed", String(wanted));
    pictures.hidden = !wanted;
    pictures.replaceChildren(...(wanted ? steps : []).map((step, index) => {
      const figure = document.createElement("figure");
      const picture = document.createElementNS(svgNames, "svg");
      picture.setAttribute("viewBox", find("screen").getAttribute("viewBox"));
      picture.setAttribute("role", "img");
      draw(picture, index);
      const caption = document.createElement("figcaption");
      caption.textContent = `${index + 1}. ${step.dataset.at} s: ${wordsOf(index)}`;
      figure.append(picture, caption);
      return figure;
    }));
    if (wanted) pictures.scrollIntoView();
  }

  const allAreShown = () => find("all").getAttribute("aria-pressed") === "true";

  const actions = {
    " ": playOrPause,
    ArrowLeft: () => goTo(current - 1),
    ArrowRight: () => goTo(current + 1),
    Home: () => goTo(0),
    End: () => goTo(steps.length - 1),
    a: () => showAll(!allAreShown()),
  };

  // Controls keep the keys that are theirs.
  document.addEventListener("keydown", (event) => {
    if (event.altKey || event.ctrlKey || event.metaKey) return;
    const control = event.target.closest("button, select, input");
    if (control && (event.key === " " || control.matches("select, input"))) return;
    const action = actions[event.key.length === 1 ? event.key.toLowerCase() : event.key];
    if (!action) return;
    event.preventDefault();
    action();
  });

  // "#step-3" opens the page at a step, "#pictures" with all of them.
  function follow(hash) {
    if (hash === "#pictures") return showAll(true);
    const step = /^#step-([0-9]+)$/.exec(hash);
    if (step) goTo(Number(step[1]) - 1);
  }

  slider.max = steps.length - 1;
  slider.addEventListener("input", () => goTo(Number(slider.value)));
  find("first").addEventListener("click", () => goTo(0));
  find("back").addEventListener("click", () => goTo(current - 1));
  find("next").addEventListener("click", () => goTo(current + 1));
  find("last").addEventListener("click", () => goTo(steps.length - 1));
  find("play").addEventListener("click", playOrPause);
  find("all").addEventListener("click", () => showAll(!allAreShown()));
  steps.forEach((step, index) => step.addEventListener("click", () => goTo(index)));
  find("timeline").addEventListener("click", (event) => {
    const track = find("axis").getBoundingClientRect();
    const time = ((event.clientX - track.left) / track.width) * end;
    const after = steps.findIndex((_, index) => timeOf(index) > time);
    goTo(after < 0 ? steps.length - 1 : after - 1);
  });
  window.addEventListener("hashchange", () => follow(location.hash));
  show(0);
  follow(location.hash);
})();
