"use strict";

const sections = ["outside", "register", "done", "profile", "deleted", "failed"];
const element = (id) => document.getElementById(id);
const message = element("message");

// The application gives its own pages this way to talk to it; an ordinary browser has none.
function bridge() {
    const view = window.chrome && window.chrome.webview;
    return view && typeof view.postMessage === "function" ? view : null;
}

// The token goes first, so that the device is known by the time the application leaves its first use.
function handToApplication(bindingToken) {
    bridge().postMessage({ action: "binddevice", bindingToken: bindingToken });
    bridge().postMessage("success");
}

function say(text, isGood = false) {
    message.textContent = text;
    message.classList.toggle("good", isGood);
}

function show(section) {
    for (const id of sections) {
        element(id).hidden = id !== section;
    }
    element("card").removeAttribute("aria-busy");
    say("");
    const first = section === "register" ? element("name") : element(section).querySelector("h1[tabindex]");
    if (first) {
        first.focus();
    }
}

async function ask(method, path, body) {
    const request = { method: method, headers: { Accept: "application/json" } };
    if (method !== "GET") {
        request.headers["Content-Type"] = "application/json";
        request.body = JSON.stringify(body || {});
    }
    let response;
    try {
        response = await fetch(path, request);
    } catch (error) {
        throw new Error("The server does not answer. See whether it runs, then try again.");
    }
    const answer = await response.json().catch(() => ({}));
    if (!response.ok) {
        const failure = new Error(answer.message || "The server answered with status " + response.status + ".");
        failure.code = answer.error;
        throw failure;
    }
    return answer;
}

// Runs one request at a time and says what went wrong. Buttons stay focusable, so that the keyboard keeps its place.
let isBusy = false;
async function working(button, work) {
    if (isBusy) {
        return;
    }
    isBusy = true;
    button.setAttribute("aria-disabled", "true");
    say("");
    try {
        await work();
    } catch (error) {
        if (error.code === "no_profile" || error.code === "has_profile") {
            await load();
        }
        say(error.message);
    } finally {
        isBusy = false;
        button.removeAttribute("aria-disabled");
    }
}

function putProfile(profile) {
    for (const place of document.querySelectorAll(".profile-name")) {
        place.textContent = profile.name;
    }
    element("profile-email").textContent = profile.email || "not given";
    element("profile-created").textContent = new Date(profile.createdAt * 1000).toLocaleDateString("en-GB",
        { day: "numeric", month: "long", year: "numeric" });
    element("profile-devices").textContent = profile.devices === 1 ? "1 bound" : profile.devices + " bound";
    element("bind").hidden = bridge() === null;
    closeConfirm();
}

async function load() {
    let state;
    try {
        state = await ask("GET", "/api/profiles/me");
    } catch (error) {
        show("failed");
        return;
    }
    if (state.profile) {
        putProfile(state.profile);
        show("profile");
    } else {
        show(bridge() ? "register" : "outside");
    }
}

function putFieldError(id, text) {
    element(id + "-error").textContent = text;
    element(id).setAttribute("aria-invalid", text ? "true" : "false");
}

function checkForm(name, email) {
    putFieldError("name", name ? "" : "Please type a name.");
    putFieldError("email", email && !element("email").validity.valid ? "This is no e-mail address." : "");
    const wrong = ["name", "email"].find((id) => element(id).getAttribute("aria-invalid") === "true");
    if (wrong) {
        element(wrong).focus();
    }
    return !wrong;
}

async function register() {
    const name = element("name").value.trim();
    const email = element("email").value.trim();
    if (!checkForm(name, email)) {
        return;
    }
    const made = await ask("POST", "/api/profiles", { name: name, email: email });
    putProfile({ name: name, email: email, createdAt: Date.now() / 1000, devices: 1 });
    element("register-form").reset();
    show("done");
    handToApplication(made.bindingToken);
}

async function bind() {
    const made = await ask("POST", "/api/profiles/me/bind");
    show("done");
    handToApplication(made.bindingToken);
}

async function remove() {
    await ask("DELETE", "/api/profiles/me");
    show("deleted");
    if (bridge()) {
        bridge().postMessage("deleted");
    }
}

function openConfirm() {
    element("confirm").hidden = false;
    element("ask-delete").hidden = true;
    element("keep").focus();
}

function closeConfirm() {
    element("confirm").hidden = true;
    element("ask-delete").hidden = false;
}

function keepProfile() {
    closeConfirm();
    element("ask-delete").focus();
}

function onClick(id, action) {
    element(id).addEventListener("click", action);
}

element("register-form").addEventListener("submit", (event) => {
    event.preventDefault();
    working(event.target.querySelector("button"), register);
});
onClick("bind", (event) => working(event.currentTarget, bind));
onClick("delete", (event) => working(event.currentTarget, remove));
onClick("ask-delete", openConfirm);
onClick("keep", keepProfile);
onClick("show-profile", load);
onClick("again", load);
onClick("retry", load);
element("confirm").addEventListener("keydown", (event) => {
    if (event.key === "Escape") {
        keepProfile();
    }
});

const version = new URLSearchParams(location.search).get("version") || "";
if (/^[0-9A-Za-z.+-]{1,32}$/.test(version)) {
    element("version").textContent = "Corvane " + version;
}
load();
