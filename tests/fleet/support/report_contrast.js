// SPDX-License-Identifier: Apache-2.0
// Returns the texts whose contrast with what is behind them is below 4.5.
const pencil = Object.assign(document.createElement('canvas'), {width: 1, height: 1}).getContext('2d');

function paint(...colours) {
    colours.forEach(colour => {
        pencil.fillStyle = colour;
        pencil.fillRect(0, 0, 1, 1);
    });
    return [...pencil.getImageData(0, 0, 1, 1).data].slice(0, 3);
}

function measure_light(colour) {
    const [red, green, blue] = colour.map(value => value / 255)
        .map(value => value <= 0.04045 ? value / 12.92 : ((value + 0.055) / 1.055) ** 2.4);
    return 0.2126 * red + 0.7152 * green + 0.0722 * blue;
}

function measure_contrast(element) {
    const behind = [];
    for (let each = element; each; each = each.parentElement) {
        behind.unshift(getComputedStyle(each).backgroundColor);
    }
    const lights = [paint(...behind), paint(...behind, getComputedStyle(element).color)].map(measure_light);
    return (Math.max(...lights) + 0.05) / (Math.min(...lights) + 0.05);
}

const elements = [...document.body.querySelectorAll('*')].filter(element => element.offsetParent !== null &&
    [...element.childNodes].some(node => node.nodeType === Node.TEXT_NODE && node.data.trim()));
return elements.filter(element => measure_contrast(element) < 4.5)
    .map(element => `${element.className} ${element.innerText}: ${measure_contrast(element).toFixed(2)}`);
